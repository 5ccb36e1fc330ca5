// The smallest and the largest value of a range, and an index that finds them without reading every sample.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

namespace Tracelyn {

// The one rule by which every scan finds the extremes of a range.
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

// The smallest or largest of some samples in their own type: Better is std::less or std::greater. The first
// of equal values stays and a NaN counts for nothing. The extremes of several blocks together are therefore
// what MinMax::Widen finds in all their samples.
template <class T, class Better>
struct Extreme {
    // Every sample is at least as good.
    static constexpr T None() {
        using Limits = std::numeric_limits<T>;
        constexpr bool isLess = Better()(T{0}, T{1});
        if constexpr (Limits::has_infinity)
            return isLess ? Limits::infinity() : -Limits::infinity();
        else
            return isLess ? Limits::max() : Limits::lowest();
    }

    static constexpr T Of(T best, T value) { return Better()(value, best) ? value : best; }

    // Goes through several lanes side by side, which the compiler turns into vector instructions. Which of
    // several equal values a lane finds first does not matter, except for the two floating zeros.
    static T Of(std::span<const T> values) {
        constexpr size_t kLanes = 32 / sizeof(T);
        std::array<T, kLanes> lanes;
        lanes.fill(None());
        const size_t whole = values.size() / kLanes * kLanes;
        const T* const data = values.data(); // a checked access would keep the loop from becoming vectors
        for (size_t at = 0; at < whole; at += kLanes) {
            for (size_t lane = 0; lane < kLanes; ++lane)
                lanes[lane] = Of(lanes[lane], data[at + lane]);
        }
        T best = None();
        for (const T value : lanes)
            best = Of(best, value);
        for (const T value : values.subspan(whole))
            best = Of(best, value);
        if (std::is_floating_point_v<T> && best == T{0})
            return *std::ranges::find(values, T{0});
        return best;
    }
};

// Keeps the extremes of every whole block of the samples it has seen, of blocks of blocks and so on; what it
// finds is exact. T is the type that samples read as.
template <class T, size_t kBlock = 256>
class CMinMaxIndex {
public:
    // Takes in what was appended to the samples since the last call; earlier samples must not have changed.
    void Extend(std::span<const T> samples) {
        Values values{samples, samples};
        for (Level& level : m_Levels) {
            level.Extend(values);
            values = level.GetValues();
        }
    }

    // Extremes of samples[from, to), which Extend has seen. An empty range gives MinMax::None().
    MinMax Find(std::span<const T> samples, size_t from, size_t to) const {
        MinMax found = MinMax::None();
        Widen(found, {samples, samples}, 0, from, to);
        return found;
    }

    size_t GetBytes() const {
        size_t bytes = 0;
        for (const Level& level : m_Levels)
            bytes += (level.smallest.capacity() + level.largest.capacity()) * sizeof(T);
        return bytes;
    }

private:
    // What one level consists of; the samples themselves are the lowest, smallest and largest of one each.
    struct Values {
        std::span<const T> smallest;
        std::span<const T> largest;

        Values Part(size_t from, size_t to) const {
            return {smallest.subspan(from, to - from), largest.subspan(from, to - from)};
        }
        T Smallest() const { return Extreme<T, std::less<>>::Of(smallest); }
        T Largest() const { return Extreme<T, std::greater<>>::Of(largest); }
    };

    struct Level {
        std::vector<T> smallest;
        std::vector<T> largest;

        Values GetValues() const { return {smallest, largest}; }

        void Extend(const Values& below) {
            const size_t old = smallest.size();
            const size_t whole = below.smallest.size() / kBlock;
            smallest.resize(whole);
            largest.resize(whole);
            for (size_t block = old; block < whole; ++block) {
                const Values part = below.Part(block * kBlock, (block + 1) * kBlock);
                smallest[block] = part.Smallest();
                largest[block] = part.Largest();
            }
        }
    };

    // Goes through the values from left to right: both ends here, all whole blocks between them a level up.
    void Widen(MinMax& found, const Values& values, size_t level, size_t from, size_t to) const {
        const auto widenBy = [&](const Values& part) {
            if (!part.smallest.empty())
                found.Widen({static_cast<float>(part.Smallest()), static_cast<float>(part.Largest())});
        };
        const size_t firstBlock = (from + kBlock - 1) / kBlock;
        const size_t endBlock = to / kBlock;
        if (level == m_Levels.size() || firstBlock >= endBlock) {
            widenBy(values.Part(from, to));
            return;
        }
        widenBy(values.Part(from, firstBlock * kBlock));
        Widen(found, m_Levels[level].GetValues(), level + 1, firstBlock, endBlock);
        widenBy(values.Part(endBlock * kBlock, to));
    }

    std::array<Level, 3> m_Levels;
};

} // namespace Tracelyn
