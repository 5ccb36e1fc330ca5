// What the samples of data sets come to in each pixel column.
#pragma once

#include "model/MinMax.h"
#include "support/BackgroundTasks.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace Tracelyn {

class CGraphDataSet;

// A set whose sample i stands at sample i + shift of the axis.
struct PlacedSet {
    const CGraphDataSet* set;
    int shift;

    bool operator==(const PlacedSet&) const = default;
};

// Of columns side by side: the samples [bounds[k], bounds[k + 1]) of the set fall on the column k, and
// summaries[k] sums them up unless there are none.
struct ColumnSums {
    std::vector<int> bounds;
    std::vector<SampleSummary> summaries;

    // Samples [starts[k], starts[k + 1]) of the axis fall on the column k. The summaries are not there yet.
    void SetColumns(const PlacedSet& placed, std::span<const int64_t> starts);
    // Of the columns [from, to).
    void SumUp(const CGraphDataSet& set, size_t from, size_t to);
};

// The sums of a whole frame, which other cores work out while it is drawn. The memory is used again from
// frame to frame.
class CFrameSums {
public:
    // Adds the tasks for these sets, one after the other; the starts are those of SetColumns. The sets and
    // this object must stay as they are until the tasks are finished.
    void Begin(std::span<const PlacedSet> sets, std::vector<int64_t> starts,
               support::CBackgroundTasks& tasks);
    // Forgets the sums of the last frame, whose tasks must be finished, and gives back memory that it did not
    // use.
    void Clear();

    // Empty when nothing was begun.
    std::span<const int64_t> GetStarts() const { return m_Starts; }
    // Waits until the sums of the set are there. Null when it is not among those that were begun. Throws what
    // the tasks throw.
    const ColumnSums* Find(const PlacedSet& placed, support::CBackgroundTasks& tasks) const;

private:
    struct Entry {
        PlacedSet placed;
        ColumnSums sums;
        std::atomic<int> pieces = 0; // that are not there yet
    };

    const Entry* FindEntry(const PlacedSet& placed) const;

    std::vector<int64_t> m_Starts;
    std::deque<Entry> m_Entries;
    size_t m_nBegun = 0; // of these
};

} // namespace Tracelyn
