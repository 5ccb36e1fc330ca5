// Every figure against a plain loop over the samples, and the index against it too.
#include "Testing.h"
#include "measure/Signals.h"
#include "measure/StatisticsIndex.h"
#include "model/GraphData.h"
#include "model/GraphDataVariants.h"

namespace {

constexpr double kStep = -0.25; // of the axis

// The value, and how exact it must be.
void ExpectClose(double found, long double expected, long double scale, const char* what) {
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(found)) << what << " " << found;
    else
        EXPECT_LE(std::abs(found - expected), 1e-12L * scale) << what << " " << found;
}

// The definitions, in the order in which they are usually written down.
void ExpectPlain(const Statistics& found, const CGraphDataSet& set, int from, int to) {
    from = std::max(from, 0);
    to = std::min(to, set.GetCount() - 1);
    std::vector<int> at;
    std::vector<long double> values;
    Switching switching;
    for (int i = from; i <= to; ++i) {
        const double value = set.GetScaledValue(i, -1);
        if (std::isfinite(value)) {
            at.push_back(i);
            values.push_back(value);
        }
        const bool on = set.GetValue(i, -1) != 0;
        const bool before = set.GetValue(i - 1, -1) != 0;
        switching.timeOn += on ? 1 : 0;
        switching.switchedOn += i > from && on && !before ? 1 : 0;
        switching.switchedOff += i > from && !on && before ? 1 : 0;
    }
    const auto count = static_cast<long double>(values.size());
    long double sum = 0;
    long double magnitudes = 0;
    long double sumAt = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        sum += values[i];
        magnitudes += std::abs(values[i]);
        sumAt += at[i];
    }
    long double squares = 0;
    long double products = 0;
    long double squaresAt = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        squares += (values[i] - sum / count) * (values[i] - sum / count);
        products += (values[i] - sum / count) * (at[i] - sumAt / count);
        squaresAt += (at[i] - sumAt / count) * (at[i] - sumAt / count);
    }
    const auto end = [&](int i) {
        const double value = from <= to ? set.GetScaledValue(i, -1) : NAN;
        return std::isfinite(value) ? value : NAN;
    };
    ASSERT_EQ(found.count, std::ssize(values));
    ExpectClose(found.first, end(from), 0, "first");
    ExpectClose(found.last, end(to), 0, "last");
    ExpectClose(found.difference, end(to) - end(from), 0, "difference");
    ExpectClose(found.mean, sum / count, std::abs(sum / count) + 1e-6L * magnitudes / count, "mean");
    ExpectClose(found.deviation, std::sqrt(squares / count), std::sqrt(squares / count), "deviation");
    const bool hasSlope = values.size() > 1;
    ExpectClose(found.slope, hasSlope ? products / squaresAt / kStep : NAN,
                hasSlope ? std::sqrt(squares / squaresAt) / -kStep : 0, "slope");
    const auto min = std::ranges::min_element(values);
    const auto max = std::ranges::max_element(values);
    ExpectClose(found.min, values.empty() ? NAN : *min, 0, "min");
    ExpectClose(found.max, values.empty() ? NAN : *max, 0, "max");
    EXPECT_EQ(found.minAt, values.empty() ? -1 : at[size_t(min - values.begin())]);
    EXPECT_EQ(found.maxAt,
              values.empty() ? -1 : at[size_t(std::ranges::find(values, *max) - values.begin())]);
    ASSERT_EQ(found.switching.has_value(), set.IsBinary() && from <= to);
    if (found.switching) {
        EXPECT_EQ(found.switching->switchedOn, switching.switchedOn);
        EXPECT_EQ(found.switching->switchedOff, switching.switchedOff);
        EXPECT_EQ(found.switching->timeOn, switching.timeOn);
        EXPECT_EQ(found.switching->share, double(switching.timeOn) / (to - from + 1));
    }
}

template <class T>
struct Recording {
    static constexpr int kSamples = 600'000;

    // Runs of anything, of noise on a large value, of zeros, and of one that means nothing to a float.
    Recording() {
        data.Make<CGraphDataIndexSet>("Time").SetUnit("s", 7, kStep, 0);
        auto group = std::make_unique<CGraphDataGroup>("Motion");
        for (auto* const set : {&signal, &onOff}) {
            set->SetUnit("mm", -3.5F, 0.3F, 1);
            group->AddSet(set);
        }
        data.AddGroup(std::move(group));
        while (source.GetCount() < kSamples) {
            const auto kind = random() % 5;
            for (auto run = random() % (random() % 20 == 0 ? 200'000 : 3'000); run > 0; --run) {
                const auto any = std::bit_cast<std::array<T, 4 / sizeof(T)>>(uint32_t(random()))[0];
                constexpr T kLarge = static_cast<T>(sizeof(T) == 4 ? 1e9F : 100);
                const T noise =
                    static_cast<T>(kLarge + static_cast<T>(random() % 4 * (sizeof(T) == 4 ? 64 : 1)));
                constexpr T kOdd = std::is_floating_point_v<T> ? std::numeric_limits<T>::infinity() : T{1};
                source.Add(std::array{any, noise, noise, T{0}, kOdd}[kind]);
                bits.Add(static_cast<uint8_t>(random() % (kind + 2) == 0 ? kind : 0));
            }
        }
    }

    std::mt19937 random{20240919};
    CGraphDataTypedSource<T> source;
    CGraphDataTypedSource<uint8_t> bits;
    CGraphData data;
    CGraphDataSet& signal = data.Make<CGraphDataTypedSet<T>>("Path", &source);
    CGraphDataSet& onOff = data.Make<CGraphDataBinarySet>("Pedal", &bits);
};

template <class T>
class MeasuredType : public ::testing::Test {};
using SampleTypes = ::testing::Types<int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, float>;
TYPED_TEST_SUITE(MeasuredType, SampleTypes);

} // namespace

TYPED_TEST(MeasuredType, GivesTheFiguresOfAPlainLoopWithAndWithoutAnIndex) {
    Recording<TypeParam> recording;
    const int count = recording.signal.GetCount();
    std::vector<std::pair<int, int>> ranges{{INT_MIN, INT_MAX}, {0, 0},         {5, 5},       {6, 5},
                                            {-9, -1},           {count, count}, {2048, 4095}, {2047, 4096}};
    for (int i = 0; i < 24; ++i) {
        const int from = int(recording.random() % unsigned(count + 20)) - 10;
        ranges.emplace_back(from, from + int(recording.random() % (i < 12 ? 9'000 : 500'000)));
    }
    CStatisticsIndex index(recording.data);
    EXPECT_FALSE(index.Prepare([](double) { return false; }));
    EXPECT_EQ(index.GetBytes(), 0U);
    EXPECT_TRUE(index.Prepare());
    EXPECT_LE(index.GetBytes(), size_t(count) * (sizeof(TypeParam) + 1) / 20);
    for (const auto& [from, to] : ranges) {
        for (const CGraphDataSet* set : {&recording.signal, &recording.onOff}) {
            SCOPED_TRACE(testing::Message() << set->GetName().toStdString() << " " << from << ".." << to);
            ExpectPlain(Measure(*set, from, to, AxisStep(recording.data)), *set, from, to);
            ExpectPlain(index.Measure(*set, from, to), *set, from, to);
        }
    }
}

TEST(Figures, LoseNothingSmallAmongTheLarge) {
    CGraphData data;
    CGraphDataTypedSource<float> swinging;
    CGraphDataTypedSource<float> noisy;
    for (int i = 0; i < 90'000; ++i) {
        swinging.Add(std::array{3e30F, 1.0F, -3e30F}[size_t(i % 3)]);
        noisy.Add(1e9F + 64.0F * float(i % 2));
    }
    const auto& swing = data.Make<CGraphDataTypedSet<float>>("swing", &swinging);
    const auto& noise = data.Make<CGraphDataTypedSet<float>>("noise", &noisy);
    EXPECT_EQ(Measure(swing, 0, INT_MAX, 1).mean, 1.0 / 3);
    EXPECT_EQ(Measure(noise, 0, INT_MAX, 1).deviation, 32);
}

TEST(Switching, IsFoundFromAnySampleOn) {
    CGraphData data;
    CGraphDataTypedSource<uint8_t> source;
    const auto& set = data.Make<CGraphDataBinarySet>("Pedal", &source);
    EXPECT_EQ(FindSwitchOn(set, 0), std::nullopt);
    for (int i = 0; i < 1'000'000; ++i)
        source.Add(i == 700 || (i >= 5'000 && i < 900'000) ? 200 : 0);
    using Case = std::tuple<int, std::optional<int>, std::optional<int>>;
    for (const auto& [from, on, off] :
         {Case{-5, 700, 0}, Case{700, 700, 701}, Case{701, 5'000, 701}, Case{5'000, 5'000, 900'000},
          Case{899'999, 899'999, 900'000}, Case{900'000, {}, 900'000}, Case{1'000'000, {}, {}}}) {
        EXPECT_EQ(FindSwitchOn(set, from), on) << from;
        EXPECT_EQ(FindSwitchOff(set, from), off) << from;
    }
}
