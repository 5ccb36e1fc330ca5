// The index of extremes against the plain walk through the samples.
#include "model/MinMaxIndex.h"
#include "ModelTesting.h"

#include <random>

using namespace Tracelyn;

namespace {

template <class T>
MinMax PlainWalk(std::span<const T> samples) {
    MinMax found = MinMax::None();
    for (const T sample : samples)
        found.Widen(static_cast<float>(sample));
    return found;
}

// Runs of few different values, so that equal ones meet; among floats those that compare strangely, and some
// runs of them alone.
template <class T>
std::vector<T> RandomSamples(std::mt19937& random, size_t count) {
    using Limits = std::numeric_limits<T>;
    std::vector<T> palette{T{0}, T{1}, Limits::lowest(), Limits::max()};
    if constexpr (std::is_same_v<T, float>)
        palette = {-0.0F, 0.0F, NAN, HUGE_VALF, -HUGE_VALF, Limits::denorm_min(), -1.5F, 3.0F};
    std::vector<T> samples;
    while (samples.size() < count) {
        const size_t first = random() % palette.size();
        const size_t kinds = 1 + random() % 3;
        const bool anyBits = random() % 4 == 0;
        for (size_t run = random() % 60; run > 0; --run) {
            const auto bits = static_cast<uint32_t>(random());
            const T any = std::bit_cast<std::array<T, 4 / sizeof(T)>>(bits)[0];
            samples.push_back(anyBits ? any : palette[(first + random() % kinds) % palette.size()]);
        }
    }
    samples.resize(count);
    return samples;
}

template <class T, size_t kBlock>
void ExpectEveryRangeAsWalked(const std::vector<T>& samples) {
    MinMaxIndex<T, kBlock> index;
    for (const size_t known : {samples.size() / 3, samples.size()}) {
        const auto seen = std::span(samples).first(known);
        index.Extend(seen);
        for (size_t from = 0; from < known; ++from) {
            for (size_t to = from; to <= known; ++to)
                ASSERT_EQ(Bits(index.Find(seen, from, to)), Bits(PlainWalk(seen.subspan(from, to - from))))
                    << from << ".." << to << " of " << known;
        }
    }
}

} // namespace

template <class T>
class MinMaxIndexOf : public ::testing::Test {};

using SampleTypes = ::testing::Types<uint8_t, int16_t, uint16_t, int32_t, uint32_t, float>;
TYPED_TEST_SUITE(MinMaxIndexOf, SampleTypes);

TYPED_TEST(MinMaxIndexOf, AnswersEveryRangeAsAWalkThroughIt) {
    std::mt19937 random(20240607);
    for (const size_t count : {1U, 100U, 260U}) {
        const auto samples = RandomSamples<TypeParam>(random, count);
        ExpectEveryRangeAsWalked<TypeParam, 4>(samples);
        ExpectEveryRangeAsWalked<TypeParam, 64>(samples);
    }
}

TYPED_TEST(MinMaxIndexOf, TakesLittleMemory) {
    const std::vector<TypeParam> samples(1'000'000);
    MinMaxIndex<TypeParam> index;
    index.Extend(samples);
    EXPECT_LE(index.GetBytes() * 20, samples.size() * sizeof(TypeParam));
}
