#include "measure/Moments.h"

#include "model/GraphDataSet.h"
#include "model/MinMax.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <span>

namespace Tracelyn {

namespace {

// Not std::isfinite, which keeps a loop from becoming vector instructions.
bool IsFinite(float value) {
    constexpr uint32_t kExponent = 0x7F800000;
    return (std::bit_cast<uint32_t>(value) & kExponent) != kExponent;
}

bool AreFinite(std::span<const float> values) {
    unsigned others = 0;
    for (const float value : values)
        others |= static_cast<unsigned>(!IsFinite(value));
    return others == 0;
}

// The sums of squares and of products around the mean, in lanes as SumOf has them. No sum here loses much:
// the squares are positive, and all distances are small.
void AddDistances(Moments& moments, std::span<const float> values, double mean, double middle) {
    constexpr size_t kLanes = 8;
    std::array<double, kLanes> squares{};
    std::array<double, kLanes> products{};
    std::array<double, kLanes> at;
    for (size_t lane = 0; lane < kLanes; ++lane)
        at[lane] = static_cast<double>(lane) - middle;
    const size_t whole = values.size() / kLanes * kLanes;
    const float* const data = values.data(); // a checked access would keep the loop from becoming vectors
    for (size_t from = 0; from < whole; from += kLanes) {
        for (size_t lane = 0; lane < kLanes; ++lane) {
            const double distance = data[from + lane] - mean;
            squares[lane] += distance * distance;
            products[lane] += distance * at[lane];
            at[lane] += kLanes;
        }
    }
    for (size_t rest = whole; rest < values.size(); ++rest) {
        const double distance = values[rest] - mean;
        squares[0] += distance * distance;
        products[0] += distance * (static_cast<double>(rest) - middle);
    }
    for (size_t lane = 0; lane < kLanes; ++lane) {
        moments.squares += squares[lane];
        moments.products += products[lane];
    }
}

// Of finite values, at least one.
Moments MomentsOfRun(std::span<const float> values, int first) {
    const auto count = static_cast<double>(values.size());
    const double middle = (count - 1) / 2;
    Moments moments;
    moments.count = static_cast<uint32_t>(values.size());
    moments.sum = SumOf(values.size(), [data = values.data()](size_t i) { return double{data[i]}; });
    moments.meanAt = first + middle;
    moments.squaresAt = count * (count * count - 1) / 12;
    moments.min = Extreme<float, std::less<>>::Of(values);
    moments.max = Extreme<float, std::greater<>>::Of(values);
    moments.minAt = first + static_cast<int>(std::ranges::find(values, moments.min) - values.begin());
    moments.maxAt = first + static_cast<int>(std::ranges::find(values, moments.max) - values.begin());
    AddDistances(moments, values, moments.sum.Get() / count, middle);
    return moments;
}

} // namespace

void Moments::Add(const Moments& next) {
    if (next.count == 0)
        return;
    if (count == 0) {
        *this = next;
        return;
    }
    const double here = count;
    const double there = next.count;
    const double share = there / (here + there);
    const CompensatedSum mean = sum.DividedBy(here);
    const CompensatedSum nextMean = next.sum.DividedBy(there);
    const double distance = (nextMean.high - mean.high) + (nextMean.low - mean.low);
    const double distanceAt = next.meanAt - meanAt;
    squares += next.squares + distance * distance * here * share;
    products += next.products + distance * distanceAt * here * share;
    squaresAt += next.squaresAt + distanceAt * distanceAt * here * share;
    meanAt += distanceAt * share;
    sum.Add(next.sum);
    count += next.count;
    if (next.min < min) {
        min = next.min;
        minAt = next.minAt;
    }
    if (next.max > max) {
        max = next.max;
        maxAt = next.maxAt;
    }
}

void Switches::Add(const Switches& next) {
    if (next.isEmpty)
        return;
    if (isEmpty) {
        *this = next;
        return;
    }
    on += next.on;
    switchedOn += next.switchedOn + static_cast<uint32_t>(!endsOn && next.beginsOn);
    switchedOff += next.switchedOff + static_cast<uint32_t>(endsOn && !next.beginsOn);
    endsOn = next.endsOn;
}

Moments MomentsOf(const CGraphDataSet& set, int first, int count, BlockValues& room) {
    const std::span values = std::span(room).first(static_cast<size_t>(count));
    set.GetScaledValues(first, values);
    if (AreFinite(values) && count > 0)
        return MomentsOfRun(values, first);
    Moments moments;
    for (auto at = values.begin(); at != values.end();) {
        const auto begin = std::find_if(at, values.end(), IsFinite);
        at = std::find_if_not(begin, values.end(), IsFinite);
        if (begin != at)
            moments.Add(MomentsOfRun({begin, at}, first + static_cast<int>(begin - values.begin())));
    }
    return moments;
}

Switches SwitchesOf(const CGraphDataSet& set, int first, int count) {
    Switches switches;
    std::array<double, 256> states; // raw values, then 1 and 0
    for (int done = 0; done < count;) {
        const std::span part =
            std::span(states).first(std::min(states.size(), static_cast<size_t>(count - done)));
        set.GetValues(first + done, 1, part);
        double* const data = part.data(); // a checked access would keep the loops from becoming vectors
        for (size_t i = 0; i < part.size(); ++i)
            data[i] = data[i] != 0 ? 1.0 : 0.0;
        const double on = PlainSumOf(part.size(), [data](size_t i) { return data[i]; });
        const double changes =
            PlainSumOf(part.size() - 1, [data](size_t i) { return std::abs(data[i + 1] - data[i]); });
        const double surplus = part.back() - part.front(); // of changes to on
        switches.Add({.on = static_cast<uint32_t>(on),
                      .switchedOn = static_cast<uint32_t>((changes + surplus) / 2),
                      .switchedOff = static_cast<uint32_t>((changes - surplus) / 2),
                      .isEmpty = false,
                      .beginsOn = part.front() != 0,
                      .endsOn = part.back() != 0});
        done += static_cast<int>(part.size());
    }
    return switches;
}

} // namespace Tracelyn
