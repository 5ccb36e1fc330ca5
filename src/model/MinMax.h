// The smallest and the largest value of a range, and an index that finds them without reading every sample.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
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
    // Whether anything was taken in.
    constexpr bool HasValue() const { return min <= max; }
    constexpr void Widen(const MinMax& other) {
        if (min > other.min)
            min = other.min;
        if (other.max > max)
            max = other.max;
    }
};

// Comparisons for Extreme, of two values or of two vectors of values: of all values, or of those that are
// finite.
struct AllValues {
    struct Less {
        constexpr auto operator()(const auto& a, const auto& b) const { return a < b; }
    };
    struct Greater {
        constexpr auto operator()(const auto& a, const auto& b) const { return a > b; }
    };
};
struct FiniteValues {
    struct Less {
        constexpr auto operator()(const auto& a, const auto& b) const {
            return (a < b) & (a >= std::numeric_limits<float>::lowest());
        }
    };
    struct Greater {
        constexpr auto operator()(const auto& a, const auto& b) const {
            return (a > b) & (a <= std::numeric_limits<float>::max());
        }
    };
};

// The smallest or largest of some samples in their own type: Better is one of the comparisons above. The
// first of equal values stays and a NaN counts for nothing. The extremes of several blocks together are
// therefore what MinMax::Widen finds in all their samples.
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

    // Of all the parts together, from left to right. Which of several equal values a lane of a vector finds
    // first does not matter, except for the two floating zeros.
    static T Of(std::span<const std::span<const T>> parts) {
        Vector best = Vector{} + None();
        Vector other = best;
        T rest = None();
        for (const std::span<const T> part : parts) {
            const T* at = part.data();
            const T* const end = at + part.size();
            for (; end - at >= 2 * kLanes; at += 2 * kLanes) {
                Take(best, at);
                Take(other, at + kLanes);
            }
            if (end - at >= kLanes) {
                Take(best, at);
                at += kLanes;
            }
            for (; at != end; ++at)
                rest = Better()(*at, rest) ? *at : rest;
        }
        best = Better()(other, best) ? other : best;
        for (int lane = 0; lane < kLanes; ++lane)
            rest = Better()(best[lane], rest) ? best[lane] : rest;
        if (std::is_floating_point_v<T> && rest == T{0})
            return FirstZero(parts);
        return rest;
    }

private:
    // What a processor compares in one step.
    static constexpr int kLanes = 16 / sizeof(T);
    using Vector [[gnu::vector_size(16)]] = T;

    static void Take(Vector& best, const T* values) {
        Vector vector;
        std::memcpy(&vector, values, sizeof(vector));
        best = Better()(vector, best) ? vector : best;
    }

    static T FirstZero(std::span<const std::span<const T>> parts) {
        for (const std::span<const T> part : parts) {
            const auto found = std::ranges::find(part, T{0});
            if (found != part.end())
                return *found;
        }
        return T{0};
    }
};

// Keeps the extremes of every whole block of the samples it has seen, of blocks of blocks and so on; what it
// finds is exact. T is the type that samples read as; Which tells which of their values count. Small blocks
// make answers fast: a picture asks for the range of each of its columns. They take 3 to 4 % of the samples'
// memory.
template <class T, size_t kBlock = 64, class Which = AllValues>
class CMinMaxIndex {
public:
    // Takes in what was appended to the samples since the last call; earlier samples must not have changed.
    void Extend(std::span<const T> samples) {
        Values values{samples, samples};
        for (size_t level = 0; level < m_Levels.size(); ++level) {
            m_Levels[level].Extend(values, BlockSize(level));
            values = m_Levels[level].GetValues();
        }
    }

    // Extremes of samples[from, to), which Extend has seen. An empty range gives MinMax::None().
    MinMax Find(std::span<const T> samples, size_t from, size_t to) const {
        if (from >= to)
            return MinMax::None();
        Parts parts;
        Collect(parts, {samples, samples}, 0, from, to);
        return {static_cast<float>(parts.Smallest()), static_cast<float>(parts.Largest())};
    }

    size_t GetBytes() const {
        size_t bytes = 0;
        for (const Level& level : m_Levels)
            bytes += (level.smallest.capacity() + level.largest.capacity()) * sizeof(T);
        return bytes;
    }

private:
    // Of how many values of the level below a block of the level consists.
    static constexpr size_t BlockSize(size_t level) { return level == 0 ? kBlock : 16; }

    static constexpr size_t kLevels = 5;

    // What one level consists of; the samples themselves are the lowest, smallest and largest of one each.
    struct Values {
        std::span<const T> smallest;
        std::span<const T> largest;
    };

    // Parts of levels that together cover a range, from left to right.
    class Parts {
    public:
        void Add(const Values& values, size_t from, size_t to) {
            if (from == to)
                return;
            m_Smallest[m_nCount] = values.smallest.subspan(from, to - from);
            m_Largest[m_nCount++] = values.largest.subspan(from, to - from);
        }
        T Smallest() const {
            return Extreme<T, typename Which::Less>::Of(std::span(m_Smallest).first(m_nCount));
        }
        T Largest() const {
            return Extreme<T, typename Which::Greater>::Of(std::span(m_Largest).first(m_nCount));
        }

    private:
        static constexpr size_t kMost = 2 * kLevels + 1;
        std::array<std::span<const T>, kMost> m_Smallest;
        std::array<std::span<const T>, kMost> m_Largest;
        size_t m_nCount = 0;
    };

    struct Level {
        std::vector<T> smallest;
        std::vector<T> largest;

        Values GetValues() const { return {smallest, largest}; }

        void Extend(const Values& below, size_t blockSize) {
            const size_t old = smallest.size();
            const size_t whole = below.smallest.size() / blockSize;
            smallest.resize(whole);
            largest.resize(whole);
            for (size_t block = old; block < whole; ++block) {
                Parts part;
                part.Add(below, block * blockSize, (block + 1) * blockSize);
                smallest[block] = part.Smallest();
                largest[block] = part.Largest();
            }
        }
    };

    // Both ends of the range here, all whole blocks between them a level up.
    void Collect(Parts& parts, const Values& values, size_t level, size_t from, size_t to) const {
        const size_t blockSize = BlockSize(level);
        const size_t firstBlock = (from + blockSize - 1) / blockSize;
        const size_t endBlock = to / blockSize;
        if (level == kLevels || firstBlock >= endBlock) {
            parts.Add(values, from, to);
            return;
        }
        parts.Add(values, from, firstBlock * blockSize);
        Collect(parts, m_Levels[level].GetValues(), level + 1, firstBlock, endBlock);
        parts.Add(values, endBlock * blockSize, to);
    }

    std::array<Level, kLevels> m_Levels;
};

} // namespace Tracelyn
