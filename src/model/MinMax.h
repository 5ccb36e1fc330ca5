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

// What some samples that follow each other come to, in values as GetValue gives them.
struct SampleSummary {
    float first;
    float last;
    // Of the finite values; MinMax::None() when there is none.
    MinMax finite;
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

// The smallest or largest of some samples in their own type: Better is one of the comparisons above, or
// std::less or std::greater. The first of equal values stays and a NaN counts for nothing. The extremes of
// several blocks together are therefore what MinMax::Widen finds in all their samples.
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

    // Which of several equal values a lane of a vector finds first does not matter, except for the two
    // floating zeros.
    static T Of(std::span<const T> values) {
        Vector best = Vector{} + None();
        Vector other = best;
        T rest = None();
        const T* at = values.data();
        const T* const end = at + values.size();
        for (; end - at >= 2 * kLanes; at += 2 * kLanes) {
            Take(best, at);
            Take(other, at + kLanes);
        }
        for (; end - at >= kLanes; at += kLanes)
            Take(best, at);
        for (; at != end; ++at)
            rest = Better()(*at, rest) ? *at : rest;
        if (values.size() >= kLanes) {
            best = Better()(other, best) ? other : best;
            for (int lane = 0; lane < kLanes; ++lane) {
                const T value = best[lane];
                rest = Better()(value, rest) ? value : rest;
            }
        }
        if (std::is_floating_point_v<T> && rest == T{0})
            return *std::ranges::find(values, T{0});
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
};

// Keeps the best value of every whole block of the samples it has seen, of blocks of blocks and so on. Small
// blocks make answers fast: a picture asks for each of its columns.
template <class T, class Better, size_t kBlock>
class CExtremeIndex {
public:
    void Extend(std::span<const T> samples) {
        std::span<const T> values = samples;
        for (size_t level = 0; level < kLevels; ++level) {
            std::vector<T>& blocks = m_Levels[level];
            const size_t size = BlockSize(level);
            const size_t old = blocks.size();
            blocks.resize(values.size() / size);
            for (size_t block = old; block < blocks.size(); ++block)
                blocks[block] = Extreme<T, Better>::Of(values.subspan(block * size, size));
            values = blocks;
        }
    }

    T Find(std::span<const T> samples, size_t from, size_t to) const { return FindIn<0>(samples, from, to); }

    size_t GetBytes() const {
        size_t bytes = 0;
        for (const auto& blocks : m_Levels)
            bytes += blocks.capacity() * sizeof(T);
        return bytes;
    }

private:
    static constexpr size_t kLevels = 5;

    // Of how many values of the level below a block of the level consists.
    static constexpr size_t BlockSize(size_t level) { return level == 0 ? kBlock : 16; }

    // All whole blocks a level up; the values at both ends only where their whole block is good enough.
    // (Sizes known to the compiler are divided by without a division.)
    template <size_t kLevel>
    T FindIn(std::span<const T> values, size_t from, size_t to) const {
        const auto inValues = [&](size_t begin, size_t end) {
            return Extreme<T, Better>::Of(values.subspan(begin, end - begin));
        };
        if constexpr (kLevel == kLevels) {
            return inValues(from, to);
        } else {
            constexpr size_t size = BlockSize(kLevel);
            const size_t first = (from + size - 1) / size;
            const size_t end = to / size;
            if (first >= end)
                return inValues(from, to);
            const std::vector<T>& blocks = m_Levels[kLevel];
            T best = FindIn<kLevel + 1>(blocks, first, end);
            if (from < first * size && IsAtLeastAsGood(blocks[first - 1], best)) {
                const T left = inValues(from, first * size);
                best = Better()(best, left) ? best : left;
            }
            if (end * size < to && (end == blocks.size() || Better()(blocks[end], best))) {
                const T right = inValues(end * size, to);
                best = Better()(right, best) ? right : best;
            }
            return best;
        }
    }

    // Of two equal values the one to the left stays, which is seen in floating zeros alone.
    static bool IsAtLeastAsGood(T value, T best) {
        return Better()(value, best) || (std::is_floating_point_v<T> && value == T{0} && best == T{0});
    }

    std::array<std::vector<T>, kLevels> m_Levels;
};

// Finds the extremes of any range of samples, exactly, without reading all of them. T is the type that
// samples read as; Which tells which of their values count. Takes 3 to 4 % of the samples' memory.
template <class T, size_t kBlock = 64, class Which = AllValues>
class CMinMaxIndex {
public:
    // Takes in what was appended to the samples since the last call; earlier samples must not have changed.
    void Extend(std::span<const T> samples) {
        m_Smallest.Extend(samples);
        m_Largest.Extend(samples);
    }

    // Extremes of samples[from, to), which Extend has seen. An empty range gives MinMax::None().
    MinMax Find(std::span<const T> samples, size_t from, size_t to) const {
        if (from >= to)
            return MinMax::None();
        return {static_cast<float>(m_Smallest.Find(samples, from, to)),
                static_cast<float>(m_Largest.Find(samples, from, to))};
    }

    size_t GetBytes() const { return m_Smallest.GetBytes() + m_Largest.GetBytes(); }

private:
    CExtremeIndex<T, typename Which::Less, kBlock> m_Smallest;
    CExtremeIndex<T, typename Which::Greater, kBlock> m_Largest;
};

} // namespace Tracelyn
