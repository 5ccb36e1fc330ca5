#include "measure/Statistics.h"

#include "model/GraphDataSet.h"
#include "support/Parallel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace Tracelyn {

namespace {

// Ranges up to this are measured before other threads would have begun.
constexpr int kFewSamples = 1 << 16;

double FiniteOrNone(double value) {
    return std::isfinite(value) ? value : Statistics::kNone;
}

RangeSummary SummaryInParallel(const CGraphDataSet& set, SampleRange range) {
    const int64_t items = (int64_t{range.end} - range.begin + kFewSamples - 1) / kFewSamples;
    std::vector<RangeSummary> parts(static_cast<size_t>(items));
    support::ForEachParallel(items, [&](int /*worker*/, int64_t item) {
        const auto begin = static_cast<int>(range.begin + item * kFewSamples);
        const int end = begin + std::min(kFewSamples, range.end - begin);
        parts[static_cast<size_t>(item)] = SummaryOf(set, {begin, end});
        return true;
    });
    RangeSummary whole;
    for (const RangeSummary& part : parts)
        whole.Add(part);
    return whole;
}

} // namespace

SampleRange SamplesBetween(const CGraphDataSet& set, int from, int to) {
    const int count = set.GetCount();
    return {std::max(from, 0), to < count ? to + 1 : count};
}

RangeSummary SummaryOf(const CGraphDataSet& set, SampleRange range) {
    BlockValues room;
    RangeSummary summary;
    for (int at = range.begin; at < range.end;) {
        const int count = std::min(kBlockSamples, range.end - at);
        summary.moments.Add(MomentsOf(set, at, count, room));
        if (set.IsBinary())
            summary.switches.Add(SwitchesOf(set, at, count));
        at += count;
    }
    return summary;
}

Statistics StatisticsOf(const CGraphDataSet& set, SampleRange range, const RangeSummary& summary,
                        double axisStep) {
    const Moments& moments = summary.moments;
    Statistics statistics;
    statistics.from = range.begin;
    statistics.to = range.end - 1;
    statistics.count = moments.count;
    std::array<float, 2> ends{};
    set.GetScaledValues(range.begin, std::span(ends).first(1));
    set.GetScaledValues(range.end - 1, std::span(ends).last(1));
    statistics.first = FiniteOrNone(ends.front());
    statistics.last = FiniteOrNone(ends.back());
    statistics.difference = statistics.last - statistics.first;
    if (moments.count > 0) {
        statistics.min = moments.min;
        statistics.minAt = moments.minAt;
        statistics.max = moments.max;
        statistics.maxAt = moments.maxAt;
        statistics.mean = moments.sum.DividedBy(moments.count).Get();
        statistics.deviation = std::sqrt(moments.squares / moments.count);
    }
    if (moments.count > 1)
        statistics.slope = FiniteOrNone(moments.products / moments.squaresAt / axisStep);
    if (!summary.switches.isEmpty) {
        const Switches& switches = summary.switches;
        statistics.switching =
            Switching{.switchedOn = switches.switchedOn,
                      .switchedOff = switches.switchedOff,
                      .timeOn = switches.on,
                      .share = static_cast<double>(switches.on) / (range.end - range.begin)};
    }
    return statistics;
}

Statistics Measure(const CGraphDataSet& set, int from, int to, double axisStep) {
    const SampleRange range = SamplesBetween(set, from, to);
    if (range.IsEmpty())
        return {};
    const bool isShort = range.end - range.begin <= kFewSamples;
    return StatisticsOf(set, range, isShort ? SummaryOf(set, range) : SummaryInParallel(set, range),
                        axisStep);
}

} // namespace Tracelyn
