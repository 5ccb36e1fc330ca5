#include "measure/Comparison.h"

#include "measure/Moments.h"
#include "measure/Signals.h"
#include "model/GraphData.h"
#include "support/Parallel.h"

#include <algorithm>
#include <cmath>

namespace Tracelyn {

namespace {

constexpr int kBlocksPerItem = 32;

struct Distance {
    CompensatedSum squares;
    double largest = -1;
    int at = -1;
    int64_t count = 0;

    // Takes in samples that stand behind these.
    void Add(const Distance& next) {
        squares.Add(next.squares);
        count += next.count;
        if (next.largest > largest) {
            largest = next.largest;
            at = next.at;
        }
    }
};

// Compares at most one block at a time, in memory that is used again.
class CBlockComparison {
public:
    CBlockComparison(const CGraphDataSet& good, const CGraphDataSet& compared, int64_t shift)
        : m_Good(good), m_Compared(compared), m_nShift(shift) {}

    // Of the samples first, first + 1, ..., which both have.
    Distance Of(int64_t first, size_t count) {
        m_Good.GetScaledValues(static_cast<int>(first - m_nShift), std::span(m_GoodValues).first(count));
        m_Compared.GetScaledValues(static_cast<int>(first), std::span(m_Values).first(count));
        Distance distance;
        // A distance of floats is finite when both are. Others become -1, which is never the largest.
        for (size_t i = 0; i < count; ++i) {
            const double size = std::abs(double{m_Values[i]} - m_GoodValues[i]);
            const bool counts = size <= std::numeric_limits<double>::max();
            m_Sizes[i] = counts ? size : -1;
            distance.count += counts ? 1 : 0;
            distance.largest = std::max(distance.largest, m_Sizes[i]);
        }
        distance.squares = SumOf(count, [&sizes = m_Sizes](size_t i) {
            const double size = std::max(sizes[i], 0.0);
            return size * size;
        });
        if (distance.count > 0)
            distance.at =
                static_cast<int>(first + (std::ranges::find(m_Sizes, distance.largest) - m_Sizes.begin()));
        return distance;
    }

private:
    const CGraphDataSet& m_Good;
    const CGraphDataSet& m_Compared;
    int64_t m_nShift;
    BlockValues m_GoodValues;
    BlockValues m_Values;
    std::array<double, kBlockSamples> m_Sizes;
};

} // namespace

std::vector<CommonSignal> MatchSignals(const CGraphData& good, const CGraphData& compared) {
    std::vector<CommonSignal> matches;
    for (const auto& [group, set] : ShownSignals(good)) {
        if (good.FindCounterpart(*group, *set) == set)
            matches.push_back({group, set, compared.FindCounterpart(*group, *set)});
    }
    return matches;
}

bool HaveCommonSignal(std::span<const CommonSignal> matches) {
    return std::ranges::any_of(matches,
                               [](const CommonSignal& signal) { return signal.compared != nullptr; });
}

Deviation Compare(const CGraphDataSet& good, const CGraphDataSet& compared, int shift) {
    const int64_t begin = std::max(0, shift);
    const int64_t end = std::min(int64_t{compared.GetCount()}, int64_t{good.GetCount()} + shift);
    constexpr int64_t kItem = int64_t{kBlocksPerItem} * kBlockSamples;
    const int64_t items = std::max<int64_t>(0, (end - begin + kItem - 1) / kItem);
    std::vector<Distance> parts(static_cast<size_t>(items));
    support::ForEachParallel(items, [&](int /*worker*/, int64_t item) {
        CBlockComparison blocks(good, compared, shift);
        Distance& part = parts[static_cast<size_t>(item)];
        const int64_t itemEnd = std::min(end, begin + (item + 1) * kItem);
        for (int64_t at = begin + item * kItem; at < itemEnd; at += kBlockSamples)
            part.Add(blocks.Of(at, static_cast<size_t>(std::min<int64_t>(kBlockSamples, itemEnd - at))));
        return true;
    });
    Distance whole;
    for (const Distance& part : parts)
        whole.Add(part);
    if (whole.count == 0)
        return {};
    const double meanSquare = whole.squares.Get() / static_cast<double>(whole.count);
    return {.largest = whole.largest, .at = whole.at, .rms = std::sqrt(meanSquare), .count = whole.count};
}

} // namespace Tracelyn
