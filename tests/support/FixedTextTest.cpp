#include "support/FixedText.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>

using support::FormatFixed;

namespace {

void ExpectAsPrinted(float value, int precision) {
    std::array<char, support::kFixedTextCapacity> buffer = {};
    std::array<char, support::kFixedTextCapacity + 1> printed = {};
    const int decimals = precision < 0 ? 6 : std::min(precision, support::kMaxFixedDecimals);
    std::snprintf(printed.data(), printed.size(), "%1.*f", decimals, double{value});
    ASSERT_EQ(FormatFixed(buffer, value, precision), printed.data())
        << std::hexfloat << value << " with " << precision;
}

} // namespace

TEST(FixedText, IsWhatPrintfWrites) {
    using Limits = std::numeric_limits<float>;
    for (const float value : {0.0F, 1e-9F, 999.9999F, 0x1p32F, 0x1.fffffep31F, Limits::max(), Limits::min(),
                              Limits::denorm_min(), HUGE_VALF, NAN}) {
        for (const int precision : {-5, -1, 0, 1, 2, 6, 11, 12, 17, 39, 40, 41, 1000, INT_MAX}) {
            ExpectAsPrinted(value, precision);
            ExpectAsPrinted(-value, precision);
        }
    }
}

// Bit patterns from everywhere, numbers as they are recorded, and ties: odd multiples of a power of two.
TEST(FixedText, RoundsAsPrintfDoesWithEveryPrecision) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const auto any = std::bit_cast<float>(static_cast<uint32_t>(random()));
        const float usual = static_cast<float>(static_cast<int>(random() % 2'000'001) - 1'000'000) / 100;
        const float tie = std::ldexp(static_cast<float>(random() % 8192), -static_cast<int>(random() % 20));
        for (int precision = 0; precision <= 15; ++precision) {
            ExpectAsPrinted(any, precision);
            ExpectAsPrinted(usual, precision);
            ExpectAsPrinted(i % 2 == 0 ? tie : -tie, precision);
        }
    }
}

TEST(FixedText, ABufferThatIsTooSmallIsAProgrammingError) {
    std::array<char, 4> buffer = {};
    EXPECT_EQ(FormatFixed(buffer, 9.25F, 2), "9.25");
    EXPECT_DEATH(FormatFixed(buffer, 10.25F, 2), "error == std::errc");
}
