// A sum that does not lose the small among the large: it keeps what rounding takes from it.
#pragma once

#include <array>
#include <cstddef>

namespace Tracelyn {

struct CompensatedSum {
    double high = 0;
    double low = 0; // what the roundings of `high` have taken

    void Add(double value) {
        const double sum = high + value;
        const double added = sum - high;
        low += (high - (sum - added)) + (value - added);
        high = sum;
    }
    void Add(const CompensatedSum& other) {
        Add(other.high);
        low += other.low;
    }

    double Get() const { return high + low; }

    // The sum over a number up to 2^31, with twice a double's digits: the smaller part of the result is what
    // is missing from the larger.
    CompensatedSum DividedBy(double number) const {
        const double quotient = high / number;
        const CompensatedSum product = Product(quotient, number);
        return {quotient, (high - product.high - product.low + low) / number};
    }

private:
    // Without an error, as long as both factors are far from the ends of the range.
    static CompensatedSum Product(double a, double b) {
        constexpr double kSplitter = 134217729; // 2^27 + 1: cuts a number into two halves of its digits
        const auto upper = [](double value) { return kSplitter * value - (kSplitter * value - value); };
        const double product = a * b;
        const double aUpper = upper(a);
        const double bUpper = upper(b);
        const double aLower = a - aUpper;
        const double bLower = b - bUpper;
        return {product, aLower * bLower - (product - aUpper * bUpper - aLower * bUpper - aUpper * bLower)};
    }
};

// Both add up numbers in lanes side by side, which the compiler turns into vector instructions. ValueAt(i)
// gives the i-th of them.
template <class ValueAt>
CompensatedSum SumOf(size_t count, ValueAt valueAt) {
    constexpr size_t kLanes = 4;
    std::array<double, kLanes> high{};
    std::array<double, kLanes> low{};
    const size_t whole = count / kLanes * kLanes;
    for (size_t at = 0; at < whole; at += kLanes) {
        for (size_t lane = 0; lane < kLanes; ++lane) {
            const double value = valueAt(at + lane);
            const double sum = high[lane] + value;
            const double added = sum - high[lane];
            low[lane] += (high[lane] - (sum - added)) + (value - added);
            high[lane] = sum;
        }
    }
    CompensatedSum total;
    for (size_t lane = 0; lane < kLanes; ++lane)
        total.Add({high[lane], low[lane]});
    for (size_t at = whole; at < count; ++at)
        total.Add(valueAt(at));
    return total;
}

// For numbers of one sign, or of one size: nothing is kept of the roundings.
template <class ValueAt>
double PlainSumOf(size_t count, ValueAt valueAt) {
    constexpr size_t kLanes = 8;
    std::array<double, kLanes> sums{};
    const size_t whole = count / kLanes * kLanes;
    for (size_t at = 0; at < whole; at += kLanes) {
        for (size_t lane = 0; lane < kLanes; ++lane)
            sums[lane] += valueAt(at + lane);
    }
    double total = 0;
    for (const double sum : sums)
        total += sum;
    for (size_t at = whole; at < count; ++at)
        total += valueAt(at);
    return total;
}

} // namespace Tracelyn
