#include "render/ColumnSums.h"

#include "model/GraphDataSet.h"

#include <algorithm>
#include <utility>

namespace Tracelyn {

namespace {

// What one task sums up: whoever waits for it does not wait long.
constexpr size_t kColumnsAtOnce = 512;

} // namespace

void ColumnSums::SetColumns(const PlacedSet& placed, std::span<const int64_t> starts) {
    const int64_t count = placed.set->GetCount();
    bounds.resize(starts.size());
    std::ranges::transform(starts, bounds.begin(), [&](int64_t start) {
        return static_cast<int>(std::clamp<int64_t>(start - placed.shift, 0, count));
    });
    summaries.resize(starts.size() - 1);
}

void ColumnSums::SumUp(const CGraphDataSet& set, size_t from, size_t to) {
    set.Summarize(std::span(bounds).subspan(from, to - from + 1),
                  std::span(summaries).subspan(from, to - from));
}

void CFrameSums::Begin(std::span<const PlacedSet> sets, std::vector<int64_t> starts,
                       support::CBackgroundTasks& tasks) {
    m_Starts = std::move(starts);
    const size_t columns = m_Starts.size() - 1;
    for (const PlacedSet& placed : sets) {
        if (FindEntry(placed) != nullptr) // It may stand for several signals.
            continue;
        if (m_nBegun == m_Entries.size())
            m_Entries.emplace_back();
        Entry& entry = m_Entries[m_nBegun++];
        entry.placed = placed;
        entry.sums.SetColumns(placed, m_Starts);
        entry.pieces = static_cast<int>((columns + kColumnsAtOnce - 1) / kColumnsAtOnce);
        for (size_t from = 0; from < columns; from += kColumnsAtOnce) {
            tasks.Add([&entry, from, to = std::min(from + kColumnsAtOnce, columns)] {
                entry.sums.SumUp(*entry.placed.set, from, to);
                --entry.pieces;
            });
        }
    }
}

void CFrameSums::Clear() {
    while (m_Entries.size() > m_nBegun)
        m_Entries.pop_back();
    m_Starts.clear();
    m_nBegun = 0;
}

const ColumnSums* CFrameSums::Find(const PlacedSet& placed, support::CBackgroundTasks& tasks) const {
    const Entry* const found = FindEntry(placed);
    if (found == nullptr)
        return nullptr;
    tasks.HelpUntil([=] { return found->pieces == 0; });
    return &found->sums;
}

const CFrameSums::Entry* CFrameSums::FindEntry(const PlacedSet& placed) const {
    const auto end = m_Entries.begin() + static_cast<ptrdiff_t>(m_nBegun);
    const auto found =
        std::find_if(m_Entries.begin(), end, [&](const Entry& entry) { return entry.placed == placed; });
    return found == end ? nullptr : &*found;
}

} // namespace Tracelyn
