// The smallest and the largest value of a range, and the one rule by which every scan finds them.
#pragma once

#include <limits>

namespace Tracelyn {

struct MinMax {
    float min;
    float max;

    // Neutral for Widen: no value is smaller than its maximum or larger than its minimum.
    static constexpr MinMax None() {
        return {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()};
    }

    // Takes a value in. The first of equal values stays (it matters for -0.0); a NaN never replaces.
    constexpr void Widen(float value) { Widen(MinMax{value, value}); }
    constexpr void Widen(const MinMax& other) {
        if (min > other.min)
            min = other.min;
        if (other.max > max)
            max = other.max;
    }
};

} // namespace Tracelyn
