// Stored samples of all seven types: how they read, and that whole ranges read as single samples do.
#include "ModelTesting.h"
#include "model/GraphDataTypedSet.h"

#include <random>

using namespace Tracelyn;

template <class T>
class TypedSource : public ::testing::Test {
protected:
    // Level but for spikes around the multiples of 256; among floats also zeros of both signs and whole runs
    // that a comparison could stumble over.
    T NextSample() {
        const int index = source.GetCount();
        const auto bits = static_cast<uint32_t>(random());
        if constexpr (std::is_same_v<T, float>) {
            const std::array special{
                0.0F, HUGE_VALF, std::array{-0.0F, 0.0F}[bits % 2], -HUGE_VALF, std::bit_cast<float>(bits),
                NAN};
            if (const auto run = static_cast<size_t>(index) / 700; run % 8 < special.size())
                return special[run % 8];
        }
        return (index + 1) % 256 < 3 ? static_cast<T>(bits) : T{77};
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
    for (const int count : {0, 1, 255, 256, 257, 2600, 65'535, 65'536, 140'000}) {
        while (this->source.GetCount() < count)
            this->source.Add(this->NextSample());
        const auto expectLoop = [&](int from, int to) {
            ASSERT_EQ(MinMaxBits(set, from, to), Bits(this->Loop(from, to))) << from << ".." << to;
        };
        for (const int from : {-1, 0, 1, 255, 256, 257, 65'535, 65'536, count - 1, count, count + 1}) {
            for (const int length : {-1, 0, 1, 255, 256, 257, 768, 5000})
                expectLoop(from, from + length);
        }
        std::uniform_int_distribution<int> anywhere(-3000, count + 3000);
        for (int i = 0; i < 20; ++i) {
            const int from = anywhere(this->random);
            expectLoop(from, anywhere(this->random));
            expectLoop(from, from + 900);
        }
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

TEST(TypedSourceSamples, AreAppendedForWritingAndCountedAtOnce) {
    CGraphDataTypedSource<int16_t> source;
    source.SetSize(3);
    source.Add(5);
    EXPECT_TRUE(source.Append(0).empty());
    for (const int count : {2, 1000}) {
        const auto added = source.Append(count);
        ASSERT_EQ(added.size(), static_cast<size_t>(count));
        std::ranges::fill(added, static_cast<int16_t>(count));
    }
    EXPECT_EQ(source.GetCount(), 1003);
    EXPECT_EQ(source.GetValue(0, -1), 5.0);
    EXPECT_EQ(source.GetValue(2, -1), 2.0);
    EXPECT_EQ(source.GetValue(1002, -1), 1000.0);
    source.BuildIndex();
    EXPECT_EQ(Bits(source.Scan(0, 3)), Bits({2, 5}));
    source.Append(1).front() = -7;
    EXPECT_EQ(Bits(source.Scan(0, 2000)), Bits({-7, 1000}));
    EXPECT_THROW(source.Append(-1), std::length_error);
    EXPECT_THROW(source.Append(INT_MAX - 1003), std::length_error);
    EXPECT_EQ(source.GetCount(), 1004);
}
