// The figures of one signal between two samples.
#pragma once

#include "measure/Moments.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace Tracelyn {

class CGraphDataSet;

// Of an on/off signal. A change lies between two neighbouring samples of the range.
struct Switching {
    int64_t switchedOn = 0;
    int64_t switchedOff = 0;
    int64_t timeOn = 0; // samples at which the signal is on
    double share = 0;   // of those in all samples of the range, 0 to 1
};

// All values are scaled ones, as CGraphDataSet::GetScaledValues gives them. Values that are not finite count
// for nothing. A figure that does not exist is not-a-number, and the sample of one is -1.
struct Statistics {
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    // The samples that were measured, both included: those of the range that the signal has. When it has
    // none, `to` stands before `from`.
    int from = 0;
    int to = -1;
    int64_t count = 0;         // of the samples that count
    double first = kNone;      // the value at `from`
    double last = kNone;       // the value at `to`
    double difference = kNone; // of the two
    double min = kNone;
    int minAt = -1; // the first sample that has it
    double max = kNone;
    int maxAt = -1;
    double mean = kNone;
    double deviation = kNone;           // standard deviation: the squares are divided by their number
    double slope = kNone;               // of the line that fits best (least squares), per unit of the axis
    std::optional<Switching> switching; // of an on/off signal alone, and of a range that is not empty
};

// The statistics of the samples from `from` to `to`, both included; the range may be anything. `axisStep` is
// what AxisStep gives. Reads every sample, many on all cores: see CStatisticsIndex for questions that come
// again and again.
Statistics Measure(const CGraphDataSet& set, int from, int to, double axisStep);

// The rest is what a plain measurement and that of an index share.

// Samples [begin, end).
struct SampleRange {
    int begin = 0;
    int end = 0;

    bool IsEmpty() const { return begin >= end; }
};

// What the signal has of the samples from `from` to `to`, both included.
SampleRange SamplesBetween(const CGraphDataSet& set, int from, int to);

// What the statistics of a range are made of.
struct RangeSummary {
    Moments moments;
    Switches switches; // empty unless it is an on/off signal

    // Takes in the range right behind this one.
    void Add(const RangeSummary& next) {
        moments.Add(next.moments);
        switches.Add(next.switches);
    }
};

// Of samples that the signal has. Works on the calling thread.
RangeSummary SummaryOf(const CGraphDataSet& set, SampleRange range);

// Of a range with this summary, which is not empty.
Statistics StatisticsOf(const CGraphDataSet& set, SampleRange range, const RangeSummary& summary,
                        double axisStep);

} // namespace Tracelyn
