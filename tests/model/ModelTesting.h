// What the tests of this folder share: a set with given values, and comparison of floating values by their
// bits.
#pragma once

#include "GraphData.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

// Shows its values through the base class's own means; an index beyond either end reads 0.
class ListSet : public CGraphDataSet {
public:
    explicit ListSet(CGraphData& root) : CGraphDataSet(root) {}
    ListSet(CGraphData& root, const QString& name, std::vector<double> list = {}, bool binary = false)
        : CGraphDataSet(root, name), values(std::move(list)), m_bBinary(binary) {}

    double GetValue(int index, int /*refIndex*/) const override {
        ++reads;
        return index >= 0 && index < GetCount() ? values[static_cast<size_t>(index)] : 0.0;
    }
    double GetScaledValue(int index, int refIndex) const override { return GetValue(index, refIndex); }
    bool IsBinary() const override { return m_bBinary; }
    int GetCount() const override { return static_cast<int>(values.size()); }

    std::vector<double> values;
    mutable int reads = 0;

private:
    bool m_bBinary = false;
};

inline std::pair<uint32_t, uint32_t> Bits(const MinMax& range) {
    return {std::bit_cast<uint32_t>(range.min), std::bit_cast<uint32_t>(range.max)};
}

inline std::pair<uint32_t, uint32_t> MinMaxBits(const CGraphDataSet& set, int from, int to) {
    MinMax found{};
    set.GetMinMax(from, to, found.min, found.max);
    return Bits(found);
}

// Both batch operations give the single values, bit for bit.
inline void ExpectBatchesGiveSingleValues(const CGraphDataSet& set, int first, int step, size_t count) {
    std::vector<double> raw(count);
    std::vector<float> scaled(count);
    set.GetValues(first, step, raw);
    set.GetScaledValues(first, scaled);
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const auto at = static_cast<size_t>(i);
        ASSERT_EQ(std::bit_cast<uint64_t>(raw[at]),
                  std::bit_cast<uint64_t>(set.GetValue(first + i * step, -1)))
            << first << " + " << i << " * " << step;
        ASSERT_EQ(std::bit_cast<uint32_t>(scaled[at]),
                  std::bit_cast<uint32_t>(static_cast<float>(set.GetScaledValue(first + i, -1))))
            << first << " + " << i;
    }
}
