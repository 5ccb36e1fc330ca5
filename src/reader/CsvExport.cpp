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
    constexpr int kBatch = 256;
    std::vector<int> decimals;
    for (const CGraphDataSet* set : sets)
        decimals.push_back(set->GetPrecision());
    std::vector<float> values(sets.size() * kBatch);
    for (int first = 0; first < count;) {
        const int rows = std::min(kBatch, count - first);
        for (size_t column = 0; column < sets.size(); ++column)
            sets[column]->GetScaledValues(
                first, std::span(values).subspan(column * kBatch, static_cast<size_t>(rows)));
        for (size_t row = 0; row < static_cast<size_t>(rows); ++row) {
            for (size_t column = 0; column < sets.size(); ++column)
                file.WriteNumberField(values[column * kBatch + row], decimals[column]);
            file.EndLine();
        }
        first += rows;
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
