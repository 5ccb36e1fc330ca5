#include "FixedText.h"

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
    std::array<char, support::FixedTextCapacity> buffer = {};
    std::array<char, 2000> printed = {};
    const int decimals = precision < 0 ? 6 : std::min(precision, 1000);
    std::snprintf(printed.data(), printed.size(), "%1.*f", decimals, double{value});
    EXPECT_EQ(FormatFixed(buffer, double{value}, precision), printed.data()) << value << " " << precision;
}

} // namespace

TEST(FixedText, IsWhatPrintfWrites) {
    using Limits = std::numeric_limits<float>;
    for (const float value : {0.0F, -0.0F, 0.5F, 1.5F, 2.5F, 0.125F, -1e-9F, 999.9999F, Limits::max(),
                              Limits::lowest(), Limits::denorm_min(), HUGE_VALF, -HUGE_VALF, NAN, -NAN}) {
        for (const int precision : {-5, -1, 0, 1, 2, 6, 17, 149, 999, 1000, 1001, INT_MAX})
            ExpectAsPrinted(value, precision);
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i)
        ExpectAsPrinted(std::bit_cast<float>(static_cast<uint32_t>(random())),
                        static_cast<int>(random() % 12));
}

TEST(FixedText, ABufferThatIsTooSmallIsAProgrammingError) {
    std::array<char, 4> buffer = {};
    EXPECT_EQ(FormatFixed(buffer, 9.25, 2), "9.25");
    EXPECT_DEATH(FormatFixed(buffer, 10.25, 2), "error == std::errc");
}
