// Stored samples of all types: how they read, and that whole ranges read as single samples do.
#include "ModelTesting.h"
#include "model/GraphDataVariants.h"

template <class T>
class Samples : public ::testing::Test {
protected:
    // Runs, short and long, of few different values, so that equal ones meet; among floats those that compare
    // strangely, and some runs of them alone.
    std::vector<T> Make(size_t count, unsigned longest) {
        using Limits = std::numeric_limits<T>;
        std::vector<T> palette{T{0}, T{1}, Limits::lowest(), Limits::max()};
        if constexpr (std::is_same_v<T, float>)
            palette = {-0.0F, 0.0F, NAN, HUGE_VALF, -HUGE_VALF, Limits::denorm_min(), -1.5F, 3.0F};
        std::vector<T> samples;
        while (samples.size() < count) {
            const size_t first = random() % palette.size();
            const size_t kinds = 1 + random() % 3;
            const bool anyBits = random() % 4 == 0;
            for (size_t run = random() % longest; run > 0 && samples.size() < count; --run) {
                const auto any = std::bit_cast<std::array<T, 4 / sizeof(T)>>(uint32_t(random()))[0];
                samples.push_back(anyBits ? any : palette[(first + random() % kinds) % palette.size()]);
            }
        }
        return samples;
    }

    template <size_t kBlock>
    static void ExpectEveryRangeAsWalked(std::span<const T> samples) {
        CMinMaxIndex<T, kBlock> index;
        for (const size_t known : {samples.size() / 3, samples.size()}) {
            index.Extend(samples.first(known));
            for (size_t from = 0; from < known; ++from) {
                MinMax walked = MinMax::None();
                for (size_t to = from; to < known; ++to) {
                    ASSERT_EQ(Bits(index.Find(samples.first(known), from, to)), Bits(walked))
                        << from << ".." << to;
                    walked.Widen(static_cast<float>(samples[to]));
                }
                ASSERT_EQ(Bits(index.Find(samples.first(known), from, known)), Bits(walked)) << from;
            }
        }
    }

    std::mt19937 random{20240607};
};

using SampleTypes = ::testing::Types<int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, float>;
TYPED_TEST_SUITE(Samples, SampleTypes);

TYPED_TEST(Samples, HaveAnIndexThatAnswersEveryRangeAsAWalkAndTakesLittleMemory) {
    for (const size_t count : {1U, 100U, 260U}) {
        const auto samples = this->Make(count, 60);
        this->template ExpectEveryRangeAsWalked<4>(samples);
        this->template ExpectEveryRangeAsWalked<64>(samples);
    }
    const std::vector<TypeParam> many(1'000'000);
    CMinMaxIndex<TypeParam> index;
    index.Extend(many);
    EXPECT_LE(index.GetBytes() * 20, many.size() * sizeof(TypeParam));
}

TYPED_TEST(Samples, ReadInRangesAsSingleOnesAlsoWhenThereAreMore) {
    CGraphData data;
    CGraphDataTypedSource<TypeParam> source;
    auto& set = data.Make<CGraphDataTypedSet<TypeParam>>("set", &source);
    set.SetUnit("mm", -12.3F, 0.1F, 3);
    const auto samples = this->Make(140'000, 700);
    const auto expectLoop = [&](int from, int to) { // the definition of a scan
        const auto value = [&](int i) { return static_cast<float>(source.GetValue(i, -1)); };
        MinMax found{value(from), value(from)};
        for (int i = from; i < to; ++i)
            found.Widen(value(i));
        ASSERT_EQ(MinMaxBits(set, from, to), Bits(found)) << from << ".." << to;
    };
    for (const int count : {0, 1, 255, 256, 257, 2600, 65'535, 65'536, 140'000}) {
        while (source.GetCount() < count)
            source.Add(samples[static_cast<size_t>(source.GetCount())]);
        for (const int from : {-1, 0, 256, 257, count - 1, count, count + 1})
            expectLoop(from, from + 768);
        std::uniform_int_distribution<int> anywhere(-3000, count + 3000);
        for (int i = 0; i < 20; ++i) {
            const int from = anywhere(this->random);
            expectLoop(from, anywhere(this->random));
            expectLoop(from, from + 900);
        }
        EXPECT_EQ(MinMaxBits(set, INT_MIN, INT_MAX), MinMaxBits(set, 0, count));
        ExpectBatchesGiveSingleValues(set, -40, 7, 7000);
    }
}

TEST(TypedSource, ReadsTheNearestBytesUnsignedAndWithoutSamplesZero) {
    CGraphDataTypedSource<int8_t> bytes;
    bytes.SetSize(2);
    EXPECT_EQ(bytes.GetValue(INT_MAX, -1), 0.0);
    for (const int8_t sample : {int8_t{-1}, int8_t{12}, int8_t{13}})
        bytes.Add(sample);
    for (const auto& [index, value] : {std::pair{INT_MIN, 255.0}, {1, 12.0}, {INT_MAX, 13.0}})
        EXPECT_EQ(bytes.GetValue(index, 7), value);
}

TEST(TypedSource, TakesSamplesInBulkAndCountsThemAtOnce) {
    CGraphDataTypedSource<int16_t> source;
    source.SetSize(3);
    source.Add(5);
    EXPECT_TRUE(source.Append(0).empty());
    for (const int16_t count : {int16_t{2}, int16_t{1000}})
        std::ranges::fill(source.Append(count), count);
    for (const auto& [index, value] : {std::pair{0, 5.0}, {2, 2.0}, {3, 1000.0}, {1002, 1000.0}})
        EXPECT_EQ(source.GetValue(index, -1), value) << index;
    source.Append(1).front() = -7;
    EXPECT_EQ(Bits(source.Scan(0, 2000)), Bits({-7, 1000}));
    EXPECT_THROW(source.Append(-1), std::length_error);
    EXPECT_THROW(source.Append(INT_MAX - 1003), std::length_error);
    EXPECT_EQ(source.GetCount(), 1004);
}
