#include "CsvExport.h"

#include "CsvFile.h"
#include "GraphData.h"
#include "GraphDataVariants.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace Tracelyn {

namespace {

using Sets = std::vector<const CGraphDataSet*>;

void WriteNames(const Sets& sets, CCsvFile& file) {
    for (const CGraphDataSet* set : sets)
        file.WriteStringField(set->GetName());
    file.EndLine();
}

// The values are fetched column by column, some rows at a time, and written row by row.
void WriteRows(const Sets& sets, int count, CCsvFile& file) {
    constexpr size_t kBatchValues = 12288;
    const size_t batch = std::clamp<size_t>(kBatchValues / std::max<size_t>(sets.size(), 1), 1, 1024);
    std::vector<int> decimals;
    for (const CGraphDataSet* set : sets)
        decimals.push_back(set->GetPrecision());
    std::vector<float> values(sets.size() * batch);
    for (int first = 0; first < count;) {
        const size_t rows = std::min(batch, static_cast<size_t>(count - first));
        for (size_t column = 0; column < sets.size(); ++column)
            sets[column]->GetScaledValues(first, std::span(values).subspan(column * rows, rows));
        file.WriteNumberLines(std::span(values).first(sets.size() * rows), decimals);
        first += static_cast<int>(rows);
    }
}

} // namespace

void ExportCsv(const CGraphData& data, CCsvFile& file) {
    Sets fixed;
    Sets sampled;
    int count = 0;
    for (const auto& group : data.GetGroups()) {
        for (const CGraphDataSet* set : group->m_Sets) {
            if (dynamic_cast<const CGraphDataFixedSet*>(set)) {
                fixed.push_back(set);
            } else {
                sampled.push_back(set);
                count = std::max(count, set->GetCount());
            }
        }
    }
    WriteNames(fixed, file);
    for (const CGraphDataSet* set : fixed)
        file.WriteNumberField(static_cast<float>(set->GetScaledValue(0, kNoReference)), set->GetPrecision());
    file.EndLine();
    file.EndLine();
    WriteNames(sampled, file);
    WriteRows(sampled, count, file);
}

} // namespace Tracelyn
