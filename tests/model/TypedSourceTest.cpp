// Stored samples of all seven types: how they read, and that whole ranges read as single samples do.
#include "GraphDataTypedSet.h"
#include "ModelTesting.h"

#include <array>
#include <climits>
#include <limits>
#include <random>
#include <type_traits>

namespace {

template <class T>
class TypedSource : public ::testing::Test {
protected:
    // Level but for spikes around every multiple of 1024, each larger than those before, so that a range cut
    // short or long by one sample there has other extremes; among floats also whole blocks that a comparison
    // could stumble over.
    T NextSample() {
        const int index = source.GetCount();
        if constexpr (std::is_same_v<T, float>) {
            using Limits = std::numeric_limits<float>;
            const auto random = static_cast<uint32_t>(m_Random());
            const std::array special{0.0F,
                                     Limits::infinity(),
                                     std::array{Limits::quiet_NaN(), -0.0F, 0.0F}[random % 3],
                                     std::bit_cast<float>(random),
                                     -Limits::infinity(),
                                     Limits::quiet_NaN()};
            const auto run = static_cast<size_t>(index) / 2100;
            if (run > 0 && run < special.size())
                return special[run];
        }
        const int place = (index + 1) % 1024;
        const int spike = place < 3 ? (index + 1) / 1024 * 3 + place : 0;
        return static_cast<T>(spike % 2 == 0 ? 128 + spike : 128 - spike);
    }
    void GrowTo(int count) {
        while (source.GetCount() < count)
            source.Add(NextSample());
    }
    int Random(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_Random); }

    // The definition of a scan.
    MinMax Loop(int from, int to) const {
        auto value = static_cast<float>(source.GetValue(from, -1));
        MinMax found{value, value};
        for (int i = from; i < to; ++i) {
            value = static_cast<float>(source.GetValue(i, -1));
            if (found.min > value)
                found.min = value;
            if (value > found.max)
                found.max = value;
        }
        return found;
    }

    CGraphDataTypedSource<T> source;

private:
    std::mt19937 m_Random{20240607};
};

template <class T>
double Read(T sample) {
    CGraphDataTypedSource<T> source;
    source.Add(sample);
    return source.GetValue(0, -1);
}

using SampleTypes = ::testing::Types<int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, float>;
TYPED_TEST_SUITE(TypedSource, SampleTypes);

} // namespace

TYPED_TEST(TypedSource, ScansLikeALoopOverItsValuesAlsoWhenItHasGrown) {
    for (const int count : {0, 1, 1023, 1024, 1025, 2047, 2600, 6200, 17'000}) {
        this->GrowTo(count);
        std::vector<std::pair<int, int>> ranges;
        for (const int from :
             {-1, 0, 1, 1023, 1024, 1025, 2047, 2048, 3072, 9216, count - 1, count, count + 1}) {
            for (const int length : {-1, 0, 1, 1023, 1024, 1025, 2048, 5000})
                ranges.emplace_back(from, from + length);
        }
        for (int i = 0; i < 80; ++i)
            ranges.emplace_back(this->Random(-3000, count + 3000), this->Random(-3000, count + 3000));
        for (const auto& [from, to] : ranges)
            ASSERT_EQ(Bits(this->source.Scan(from, to)), Bits(this->Loop(from, to)))
                << count << " samples, [" << from << ", " << to << ")";
        EXPECT_EQ(Bits(this->source.Scan(INT_MIN, INT_MAX)), Bits(this->Loop(0, count)));
        EXPECT_EQ(Bits(this->source.Scan(INT_MAX, INT_MIN)), Bits(this->Loop(count, 0)));
    }
    CGraphData data;
    const auto& set = data.Make<CGraphDataTypedSet<TypeParam>>("set", &this->source);
    EXPECT_EQ(MinMaxBits(set, 1000, 7000), Bits(this->Loop(1000, 7000)));
}

TYPED_TEST(TypedSource, BatchesGiveTheSingleValues) {
    CGraphData data;
    auto& set = data.Make<CGraphDataTypedSet<TypeParam>>("set", &this->source);
    set.SetUnit("mm", -12.3F, 0.1F, 3);
    for (const int count : {0, 1, 6500}) {
        this->GrowTo(count);
        ExpectBatchesGiveSingleValues(set, -40, 1, 7000);
        ExpectBatchesGiveSingleValues(set, 3, 7, 300);
        ExpectBatchesGiveSingleValues(set, 5, 0, 257);
    }
}

TYPED_TEST(TypedSource, ReadsTheNearestSampleAndWithoutSamplesZero) {
    for (const int index : {INT_MIN, -1, 0, INT_MAX})
        EXPECT_EQ(this->source.GetValue(index, -1), 0.0);
    this->source.SetSize(2);
    EXPECT_EQ(this->source.GetCount(), 0);
    for (const int sample : {11, 12, 13})
        this->source.Add(static_cast<TypeParam>(sample));
    this->source.SetSize(1);
    this->source.Add(14);
    EXPECT_EQ(this->source.GetCount(), 4);
    for (const auto& [index, value] : std::initializer_list<std::pair<int, double>>{
             {INT_MIN, 11}, {-3, 11}, {0, 11}, {2, 13}, {3, 14}, {14, 14}, {INT_MAX, 14}})
        EXPECT_EQ(this->source.GetValue(index, 7), value) << index;
}

TEST(TypedSourceConversion, IsExactAndReadsBytesUnsigned) {
    EXPECT_EQ(Read(int8_t{-1}), 255.0);
    EXPECT_EQ(Read(uint8_t{255}), 255.0);
    EXPECT_EQ(Read(int16_t{-100}), -100.0);
    EXPECT_EQ(Read(uint16_t{0xFFFF}), 65535.0);
    EXPECT_EQ(Read(int32_t{-16777217}), -16777217.0);
    EXPECT_EQ(Read(uint32_t{0xFFFFFFFF}), 4294967295.0);
    EXPECT_EQ(Read(0.1F), double{0.1F});
}
