#include "support/FixedText.h"
#include "PlainNumbers.h"
#include "Testing.h"

TEST(FixedText, IsWhatPrintfWrites) {
    using Limits = std::numeric_limits<float>;
    for (const float value : {0.0F, 1e-9F, 999.9999F, 0x1p32F, 0x1.fffffep31F, Limits::max(), Limits::min(),
                              Limits::denorm_min(), HUGE_VALF, NAN}) {
        for (const int precision : {-5, -1, 0, 1, 2, 6, 11, 12, 17, 39, 40, 41, 1000, INT_MAX}) {
            EXPECT_EQ("", DifferenceFromPlainText(value, precision));
            EXPECT_EQ("", DifferenceFromPlainText(-value, precision));
        }
    }
}

// Bit patterns from everywhere, numbers as they are recorded, and ties: odd multiples of a power of two.
TEST(FixedText, RoundsAsPrintfDoesWithEveryPrecision) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
        const auto any = std::bit_cast<float>(static_cast<uint32_t>(random()));
        const float usual = static_cast<float>(static_cast<int>(random() % 2'000'001) - 1'000'000) / 100;
        const float tie = std::ldexp(static_cast<float>(random() % 8192), -static_cast<int>(random() % 20));
        for (int precision = 0; precision <= 15; ++precision) {
            EXPECT_EQ("", DifferenceFromPlainText(any, precision));
            EXPECT_EQ("", DifferenceFromPlainText(usual, precision));
            EXPECT_EQ("", DifferenceFromPlainText(i % 2 == 0 ? tie : -tie, precision));
        }
    }
}

TEST(FixedText, ABufferThatIsTooSmallIsAProgrammingError) {
    std::array<char, 4> buffer = {};
    EXPECT_EQ(support::FormatFixed(buffer, 9.25F, 2), "9.25");
    EXPECT_DEATH(support::FormatFixed(buffer, 10.25F, 2), "error == std::errc");
}
