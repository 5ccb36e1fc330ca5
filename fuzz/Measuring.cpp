#include "Measuring.h"

#include "FuzzInput.h"
#include "measure/Comparison.h"
#include "measure/Signals.h"
#include "measure/StatisticsIndex.h"
#include "model/GraphData.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace Tracelyn {

namespace {

bool AreClose(double one, double other, double size) {
    return std::abs(one - other) <= 1e-9 * std::abs(size) || (std::isnan(one) && std::isnan(other));
}

// The figures that a plain loop gives at once.
void CheckFigures(const Statistics& found, const CGraphDataSet& set, int from, int to) {
    int64_t count = 0;
    int64_t on = 0;
    int minAt = -1;
    int maxAt = -1;
    for (int i = std::max(from, 0); i <= to && i < set.GetCount(); ++i) {
        const double value = set.GetScaledValue(i, kNoReference);
        on += set.GetValue(i, kNoReference) != 0 ? 1 : 0;
        if (!std::isfinite(value))
            continue;
        ++count;
        if (minAt < 0 || value < set.GetScaledValue(minAt, kNoReference))
            minAt = i;
        if (maxAt < 0 || value > set.GetScaledValue(maxAt, kNoReference))
            maxAt = i;
    }
    Require(found.count == count, "values that are finite count");
    Require(found.minAt == minAt && found.maxAt == maxAt, "extremes are where a plain loop finds them");
    Require(!found.switching || found.switching->timeOn == on, "samples that are on count");
    const double size = std::max(std::abs(found.min), std::abs(found.max));
    Require(count == 0 || (found.mean >= found.min - 1e-9 * size && found.mean <= found.max + 1e-9 * size),
            "a mean lies between the extremes");
    Require(count == 0 || found.deviation <= (found.max - found.min) * (1 + 1e-9),
            "a deviation is no larger than the range");
}

void CheckIndex(const Statistics& found, const Statistics& plain) {
    Require(found.count == plain.count && found.minAt == plain.minAt && found.maxAt == plain.maxAt &&
                found.switching.has_value() == plain.switching.has_value() &&
                AreClose(found.mean, plain.mean, plain.mean) &&
                AreClose(found.deviation, plain.deviation, plain.max - plain.min),
            "the index gives the figures of all samples");
}

} // namespace

void CheckMeasures(const CGraphData& data, int from, int to) {
    CStatisticsIndex index(data);
    Require(index.Prepare(), "an index that nobody stops is complete");
    for (const auto& [group, set] : ShownSignals(data)) {
        const Statistics plain = Measure(*set, from, to, AxisStep(data));
        CheckFigures(plain, *set, from, to);
        CheckIndex(index.Measure(*set, from, to), plain);
        if (const std::optional<int> on = set->IsBinary() ? FindSwitchOn(*set, from) : std::nullopt)
            Require(*on >= from && set->GetValue(*on, kNoReference) != 0,
                    "a signal is on where it switches on");
    }
    for (const CommonSignal& signal : MatchSignals(data, data)) {
        Require(signal.compared == signal.good, "a recording has its own signals");
        const Deviation deviation = Compare(*signal.good, *signal.compared, 0);
        Require(deviation.count == 0 || deviation.largest == 0, "a signal does not deviate from itself");
    }
}

} // namespace Tracelyn
