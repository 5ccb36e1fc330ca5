// How far the signals of one recording are from those of another, good one.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace Tracelyn {

class CGraphData;
class CGraphDataGroup;
class CGraphDataSet;

// A signal of two recordings.
struct CommonSignal {
    const CGraphDataGroup* group; // of the good recording
    const CGraphDataSet* good;
    const CGraphDataSet* compared; // null when the other recording does not have it
};

// Every shown signal of the good recording with the one that stands for it in the other: see
// CGraphData::FindCounterpart. A second signal of the same name in groups of the same name is left out.
std::vector<CommonSignal> MatchSignals(const CGraphData& good, const CGraphData& compared);

// Whether the other recording has any of them.
bool HaveCommonSignal(std::span<const CommonSignal> matches);

// Of the differences between the scaled values, compared less good. Differences that are not finite count for
// nothing; when none is left, the figures are not-a-number and `at` is -1.
struct Deviation {
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    double largest = kNone; // magnitude
    int at = -1;            // the first sample of the compared signal that has it
    double rms = kNone;     // root of the mean square
    int64_t count = 0;      // of the samples that count
};

// Sample i of the compared signal stands beside sample i - shift of the good one. Samples without a neighbour
// do not count. Works on all cores when there are many.
Deviation Compare(const CGraphDataSet& good, const CGraphDataSet& compared, int shift);

} // namespace Tracelyn
