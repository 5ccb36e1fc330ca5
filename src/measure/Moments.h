// What the statistics keep of a run of samples. Those of neighbouring runs together make that of both, as if
// their samples had been looked at one by one.
#pragma once

#include "measure/CompensatedSum.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Tracelyn {

class CGraphDataSet;

// Samples that are scaled and looked at together: they fit into a core's own memory.
inline constexpr int kBlockSamples = 2048;

// Of the scaled values. Those that are not finite count for nothing.
struct Moments {
    CompensatedSum sum;
    double squares = 0;   // of the distances from the mean, summed up
    double products = 0;  // of those and the distances of their samples from the mean sample, summed up
    double meanAt = 0;    // mean of the samples' numbers
    double squaresAt = 0; // of the distances from that, summed up
    float min = std::numeric_limits<float>::infinity();
    float max = -std::numeric_limits<float>::infinity();
    int minAt = -1; // the first sample that has it; -1 when no value counts
    int maxAt = -1;
    uint32_t count = 0; // of the values that count

    // Takes in a run whose samples stand behind these.
    void Add(const Moments& next);
};

// Of an on/off signal: any raw value but 0 is on.
struct Switches {
    uint32_t on = 0;         // samples
    uint32_t switchedOn = 0; // changes between two neighbours of the run
    uint32_t switchedOff = 0;
    bool isEmpty = true;
    bool beginsOn = false;
    bool endsOn = false;

    // Takes in the run that begins right behind this one.
    void Add(const Switches& next);
};

// Room for the values of one block.
using BlockValues = std::array<float, kBlockSamples>;

// Of the samples first, first + 1, ..., at most kBlockSamples, which the signal has.
Moments MomentsOf(const CGraphDataSet& set, int first, int count, BlockValues& room);
Switches SwitchesOf(const CGraphDataSet& set, int first, int count);

} // namespace Tracelyn
