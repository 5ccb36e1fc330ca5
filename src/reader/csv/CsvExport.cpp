#include "reader/csv/CsvExport.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"
#include "reader/csv/CsvFile.h"
#include "reader/csv/NumberLines.h"
#include "support/Limits.h"
#include "support/Parallel.h"

#include <QScopeGuard>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <mutex>
#include <vector>

namespace Tracelyn {

namespace {

using Sets = std::vector<const CGraphDataSet*>;

// What the export writes: reference lines, and the signals with their rows.
struct Table {
    Sets fixed;
    Sets sampled;
    int rows = 0;
};

Table MakeTable(const CGraphData& data) {
    Table table;
    for (const auto& group : data.GetGroups()) {
        for (const CGraphDataSet* set : group->m_Sets) {
            if (dynamic_cast<const CGraphDataFixedSet*>(set)) {
                table.fixed.push_back(set);
            } else {
                table.sampled.push_back(set);
                table.rows = std::max(table.rows, set->GetCount());
            }
        }
    }
    return table;
}

// Whether support/Limits.h allows a table of so many values.
bool IsWithinLimits(const Table& table) {
    std::map<const void*, int64_t> samples;
    for (const CGraphDataSet* set : table.sampled) {
        if (set->GetStore() != nullptr)
            samples[set->GetStore()] = set->GetCount();
    }
    int64_t stored = 0;
    for (const auto& [store, count] : samples)
        stored += count;
    const int64_t values = std::ssize(table.sampled) * table.rows;
    return values <= std::max(support::limits::kFreeTableValues, support::limits::kLinesPerVariable * stored);
}

void WriteNames(const Sets& sets, CCsvFile& file) {
    for (const CGraphDataSet* set : sets)
        file.WriteStringField(set->GetName());
    file.EndLine();
}

// Lets threads that each prepare a part write these parts in their order.
class CTurns {
public:
    // Calls write() once all parts before that one are written. False, without a call, when one was given up.
    // What write() throws gives up this one.
    template <class Write>
    bool Take(int64_t part, Write write) {
        std::unique_lock lock(m_Mutex);
        m_Changed.wait(lock, [&] { return m_nNext == part || m_bGivenUp; });
        if (m_bGivenUp)
            return false;
        auto giveUp = qScopeGuard([&] {
            lock.unlock();
            GiveUp();
        });
        write();
        giveUp.dismiss();
        ++m_nNext;
        m_Changed.notify_all();
        return true;
    }

    // For a part that will never be written.
    void GiveUp() {
        const std::lock_guard lock(m_Mutex);
        m_bGivenUp = true;
        m_Changed.notify_all();
    }

private:
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    int64_t m_nNext = 0;
    bool m_bGivenUp = false;
};

std::vector<int> DecimalsOf(const Sets& sets) {
    std::vector<int> decimals;
    for (const CGraphDataSet* set : sets)
        decimals.push_back(set->GetPrecision());
    return decimals;
}

// Text for the rows of one batch after the other. Values are fetched column by column and set row by row.
class CRowText {
public:
    CRowText(const Sets& sets, size_t rows)
        : m_Sets(sets), m_Values(sets.size() * rows), m_Lines(DecimalsOf(sets), rows) {}

    std::string_view Format(int first, size_t rows) {
        const std::span values = std::span(m_Values).first(m_Sets.size() * rows);
        for (size_t column = 0; column < m_Sets.size(); ++column)
            m_Sets[column]->GetScaledValues(first, values.subspan(column * rows, rows));
        return m_Lines.Format(values);
    }

private:
    const Sets& m_Sets;
    std::vector<float> m_Values;
    CNumberLines m_Lines;
};

// False when it was asked to stop.
bool WriteRows(const Sets& sets, int count, CCsvFile& file, const support::Progress& progress) {
    if (sets.empty() || count == 0)
        return true;
    constexpr size_t kBatchValues = 12288; // fit into a core's own memory with their text
    const auto batch = static_cast<int64_t>(std::max<size_t>(kBatchValues / sets.size(), 1));
    const int64_t batches = (count + batch - 1) / batch;
    std::vector<CRowText> texts;
    texts.reserve(static_cast<size_t>(support::WorkerCount(batches)));
    for (int worker = 0; worker < support::WorkerCount(batches); ++worker)
        texts.emplace_back(sets, static_cast<size_t>(batch));
    CTurns turns;
    const auto write = [&](int worker, int64_t item) {
        const int64_t first = item * batch;
        const auto rows = static_cast<size_t>(std::min(batch, count - first));
        CRowText& rowText = texts[static_cast<size_t>(worker)];
        auto giveUp = qScopeGuard([&] { turns.GiveUp(); });
        const std::string_view text = rowText.Format(static_cast<int>(first), rows);
        giveUp.dismiss();
        return turns.Take(item, [&] { file.AppendText(text); });
    };
    return support::ForEachParallel(batches, write, progress) == batches;
}

} // namespace

ExportEnd ExportCsv(const CGraphData& data, CCsvFile& file, const support::Progress& progress) {
    const Table table = MakeTable(data);
    if (!IsWithinLimits(table))
        return ExportEnd::TooLarge;
    WriteNames(table.fixed, file);
    for (const CGraphDataSet* set : table.fixed)
        file.WriteNumberField(static_cast<float>(set->GetScaledValue(0, kNoReference)), set->GetPrecision());
    file.EndLine();
    file.EndLine();
    WriteNames(table.sampled, file);
    return WriteRows(table.sampled, table.rows, file, progress) ? ExportEnd::Complete : ExportEnd::Stopped;
}

} // namespace Tracelyn
