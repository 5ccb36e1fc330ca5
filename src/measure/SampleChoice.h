// Which samples of a recording a question is about, and where its zero is.
#pragma once

#include <QString>

#include <optional>

namespace Tracelyn {

class CGraphData;

// What is left open is the first sample, or the last one.
struct SampleChoice {
    std::optional<int> from; // 0 or more, never behind `to`
    std::optional<int> to;
    // Only the samples at which this on/off signal is on, from the first time that it switches on to the next
    // time that it switches off.
    std::optional<QString> whileSignal;
};

// Both included.
struct ChosenSamples {
    int from;
    int to;
};

// The functions return nothing when the recording does not have what they look for, and `reason` says what
// that is. They are not for several threads that ask one recording.

std::optional<ChosenSamples> FindChosen(const CGraphData& data, const SampleChoice& choice, QString& reason);

// The sample at which the recording is laid on another: where the named on/off signal switches on for the
// first time, the first sample without a name.
std::optional<int> FindZero(const CGraphData& data, const std::optional<QString>& alignSignal,
                            QString& reason);

} // namespace Tracelyn
