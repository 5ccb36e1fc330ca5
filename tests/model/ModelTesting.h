// What the tests of this folder share: a set with given values, and comparison of floats by their bits.
#pragma once

#include "Testing.h"
#include "model/GraphData.h"

#include <cstring>

namespace Tracelyn {

// Shows its values through the base class's own means; an index beyond either end reads 0.
class ListSet : public CGraphDataSet {
public:
    explicit ListSet(CGraphData& root) : CGraphDataSet(root) {}
    ListSet(CGraphData& root, const QString& name) : CGraphDataSet(root, name) {}
    double GetValue(int index, int /*refIndex*/) const override {
        return index >= 0 && index < GetCount() ? values[static_cast<size_t>(index)] : 0.0;
    }
    double GetScaledValue(int index, int refIndex) const override { return GetValue(index, refIndex); }
    bool IsBinary() const override { return false; }
    int GetCount() const override { return static_cast<int>(values.size()); }

    std::vector<double> values;
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
    for (size_t i = 0; i < count; ++i) {
        const int at = static_cast<int>(i);
        const double value = set.GetValue(first + at * step, -1);
        const auto scaledValue = static_cast<float>(set.GetScaledValue(first + at, -1));
        ASSERT_EQ(std::memcmp(&raw[i], &value, sizeof value), 0) << first << " + " << i << " * " << step;
        ASSERT_EQ(std::memcmp(&scaled[i], &scaledValue, sizeof scaledValue), 0) << first << " + " << i;
    }
}

} // namespace Tracelyn
