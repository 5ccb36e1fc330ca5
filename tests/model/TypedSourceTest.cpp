// Stored samples of all seven types: how they read, and that whole ranges read as single samples do.
#include "GraphDataTypedSet.h"
#include "ModelTesting.h"

#include <random>

template <class T>
class TypedSource : public ::testing::Test {
protected:
    // Level but for spikes around every multiple of 1024, each larger than those before, so that a range cut
    // short or long by one sample there has other extremes; among floats also whole blocks that a comparison
    // could stumble over.
    T NextSample() {
        const int index = source.GetCount();
        if constexpr (std::is_same_v<T, float>) {
            const auto bits = static_cast<uint32_t>(random());
            const float zero = std::array{NAN, -0.0F, 0.0F}[bits % 3];
            const std::array special{0.0F, HUGE_VALF, zero, std::bit_cast<float>(bits), -HUGE_VALF, NAN};
            if (const auto run = static_cast<size_t>(index) / 2100; run > 0 && run < special.size())
                return special[run];
        }
        const int place = (index + 1) % 1024;
        const int spike = place < 3 ? (index + 1) / 1024 * 3 + place : 0;
        return static_cast<T>(spike % 2 == 0 ? 128 + spike : 128 - spike);
    }
    // The definition of a scan.
    MinMax Loop(int from, int to) const {
        const auto value = [this](int i) { return static_cast<float>(source.GetValue(i, -1)); };
        MinMax found{value(from), value(from)};
        for (int i = from; i < to; ++i)
            found.Widen(value(i));
        return found;
    }

    CGraphDataTypedSource<T> source;
    std::mt19937 random{20240607};
};

using SampleTypes = ::testing::Types<int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, float>;
TYPED_TEST_SUITE(TypedSource, SampleTypes);

TYPED_TEST(TypedSource, ReadsRangesAsSingleSamplesAlsoWhenItHasGrown) {
    CGraphData data;
    auto& set = data.Make<CGraphDataTypedSet<TypeParam>>("set", &this->source);
    set.SetUnit("mm", -12.3F, 0.1F, 3);
    for (const int count : {0, 1, 1023, 1024, 1025, 2047, 2600, 6200, 17'000}) {
        while (this->source.GetCount() < count)
            this->source.Add(this->NextSample());
        const auto expectLoop = [&](int from, int to) {
            ASSERT_EQ(MinMaxBits(set, from, to), Bits(this->Loop(from, to))) << from << ".." << to;
        };
        for (const int from : {-1, 0, 1, 1023, 1024, 1025, 2047, 2048, 9216, count - 1, count, count + 1}) {
            for (const int length : {-1, 0, 1, 1023, 1024, 1025, 2048, 5000})
                expectLoop(from, from + length);
        }
        std::uniform_int_distribution<int> anywhere(-3000, count + 3000);
        for (int i = 0; i < 80; ++i)
            expectLoop(anywhere(this->random), anywhere(this->random));
        EXPECT_EQ(MinMaxBits(set, INT_MIN, INT_MAX), Bits(this->Loop(0, count)));
        ExpectBatchesGiveSingleValues(set, -40, 7, 7000);
    }
}

TEST(TypedSourceSamples, ReadExactlyTheNearestBytesUnsignedAndWithoutSamplesZero) {
    CGraphDataTypedSource<int8_t> bytes;
    bytes.SetSize(2);
    EXPECT_EQ(bytes.GetValue(INT_MAX, -1), 0.0);
    for (const int8_t sample : {int8_t{-1}, int8_t{12}, int8_t{13}})
        bytes.Add(sample);
    EXPECT_EQ(bytes.GetValue(INT_MIN, 7), 255.0);
    EXPECT_EQ(bytes.GetValue(1, 7), 12.0);
    EXPECT_EQ(bytes.GetValue(INT_MAX, 7), 13.0);
    CGraphDataTypedSource<uint32_t> integers;
    integers.Add(0xFFFFFFFF);
    EXPECT_EQ(integers.GetValue(0, -1), 4294967295.0);
}
