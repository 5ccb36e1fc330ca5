#include "FixedText.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

using support::FixedTextCapacity;
using support::FormatFixed;

namespace {

std::string Printed(double value, int precision) {
    const int decimals = precision < 0 ? 6 : std::min(precision, 1000);
    std::array<char, 2000> text = {};
    std::snprintf(text.data(), text.size(), "%1.*f", decimals, value);
    return text.data();
}

void ExpectAsPrinted(double value, int precision) {
    std::array<char, FixedTextCapacity> buffer = {};
    EXPECT_EQ(FormatFixed(buffer, value, precision), Printed(value, precision)) << value << " " << precision;
}

} // namespace

TEST(FixedText, EqualsPrintfForSpecialValuesAndEveryPrecision) {
    using Limits = std::numeric_limits<float>;
    for (const float value :
         {0.0F, -0.0F, 0.5F, 1.5F, 2.5F, 0.125F, -1e-9F, 999.9999F, Limits::max(), Limits::lowest(),
          Limits::denorm_min(), -Limits::denorm_min(), Limits::infinity(), -Limits::infinity(),
          Limits::quiet_NaN(), -Limits::quiet_NaN()}) {
        for (const int precision :
             {-5, -1, 0, 1, 2, 6, 17, 149, 999, 1000, 1001, std::numeric_limits<int>::max()})
            ExpectAsPrinted(static_cast<double>(value), precision);
    }
}

TEST(FixedText, EqualsPrintfForRandomFloats) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<uint32_t>(random()));
        ExpectAsPrinted(static_cast<double>(value), static_cast<int>(random() % 12));
    }
}

TEST(FixedText, ABufferThatIsTooSmallIsAProgrammingError) {
    std::array<char, 4> buffer = {};
    EXPECT_EQ(FormatFixed(buffer, 9.25, 2), "9.25");
    EXPECT_DEATH(FormatFixed(buffer, 10.25, 2), "error == std::errc");
}
