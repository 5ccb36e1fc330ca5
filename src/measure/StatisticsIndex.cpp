#include "measure/StatisticsIndex.h"

#include "measure/Signals.h"
#include "model/GraphData.h"
#include "support/Parallel.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace Tracelyn {

namespace {

constexpr size_t kBlock = kBlockSamples;

size_t WholeBlocks(const CGraphDataSet& set) {
    return static_cast<size_t>(set.GetCount()) / kBlock;
}

} // namespace

struct CStatisticsIndex::Levels {
    explicit Levels(const CGraphDataSet& set)
        : moments(WholeBlocks(set)), switches(set.IsBinary() ? WholeBlocks(set) : 0) {}

    CSummaryLevels<Moments> moments;
    CSummaryLevels<Switches> switches; // of on/off signals alone
};

CStatisticsIndex::CStatisticsIndex(const CGraphData& data) : m_Data(data), m_fAxisStep(AxisStep(data)) {}

CStatisticsIndex::~CStatisticsIndex() = default;

// The bits: a unit that is not-a-number must be equal to itself here.
CStatisticsIndex::Key CStatisticsIndex::KeyOf(const CGraphDataSet& set) {
    return {set.GetStore(), std::bit_cast<uint32_t>(set.GetUnitOffset()),
            std::bit_cast<uint32_t>(set.GetUnitFactor())};
}

bool CStatisticsIndex::Prepare(const support::Progress& progress) {
    struct Work {
        const CGraphDataSet* set;
        Levels* levels;
        int64_t firstItem;
    };
    constexpr int64_t kBlocksPerItem = 64;
    std::map<Key, std::unique_ptr<Levels>> added;
    std::vector<Work> works;
    int64_t items = 0;
    for (const ShownSignal& signal : ShownSignals(m_Data)) {
        const Key key = KeyOf(*signal.set);
        if (m_Levels.contains(key) || added.contains(key))
            continue;
        auto& levels = added[key] = std::make_unique<Levels>(*signal.set);
        works.push_back({signal.set, levels.get(), items});
        items += (static_cast<int64_t>(WholeBlocks(*signal.set)) + kBlocksPerItem - 1) / kBlocksPerItem;
    }
    const auto summarize = [&](int /*worker*/, int64_t item) {
        const auto& [set, levels, firstItem] = *std::prev(
            std::ranges::upper_bound(works, item, {}, [](const Work& work) { return work.firstItem; }));
        BlockValues room;
        const auto begin = static_cast<size_t>((item - firstItem) * kBlocksPerItem);
        const size_t end = std::min(WholeBlocks(*set), begin + kBlocksPerItem);
        for (size_t block = begin; block < end; ++block) {
            const auto first = static_cast<int>(block * kBlock);
            levels->moments.Block(block) = MomentsOf(*set, first, kBlockSamples, room);
            if (set->IsBinary())
                levels->switches.Block(block) = SwitchesOf(*set, first, kBlockSamples);
        }
        return true;
    };
    if (support::ForEachParallel(items, summarize, progress) != items)
        return false;
    for (const auto& [key, levels] : added) {
        levels->moments.BuildUpper();
        levels->switches.BuildUpper();
    }
    m_Levels.merge(added);
    return true;
}

Statistics CStatisticsIndex::Measure(const CGraphDataSet& set, int from, int to) const {
    const SampleRange range = SamplesBetween(set, from, to);
    const auto found = m_Levels.find(KeyOf(set));
    if (range.IsEmpty() || found == m_Levels.end())
        return Tracelyn::Measure(set, from, to, m_fAxisStep);
    const size_t begin = (static_cast<size_t>(range.begin) + kBlock - 1) / kBlock;
    const size_t end = static_cast<size_t>(range.end) / kBlock;
    if (begin >= end)
        return StatisticsOf(set, range, SummaryOf(set, range), m_fAxisStep);
    RangeSummary summary = SummaryOf(set, {range.begin, static_cast<int>(begin * kBlock)});
    found->second->moments.AddTo(summary.moments, begin, end);
    if (set.IsBinary())
        found->second->switches.AddTo(summary.switches, begin, end);
    summary.Add(SummaryOf(set, {static_cast<int>(end * kBlock), range.end}));
    return StatisticsOf(set, range, summary, m_fAxisStep);
}

size_t CStatisticsIndex::GetBytes() const {
    size_t bytes = 0;
    for (const auto& [key, levels] : m_Levels)
        bytes += levels->moments.GetBytes() + levels->switches.GetBytes();
    return bytes;
}

} // namespace Tracelyn
