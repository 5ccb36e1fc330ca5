#include "support/ShortFields.h"
#include "Testing.h"
#include "support/FixedText.h"

namespace {

// "" when a column's fields are what FormatFixed writes and its neighbours keep theirs; nothing when it has
// no fields.
std::optional<std::string> Difference(std::span<const float> values, int precision) {
    support::CShortFields fields(3, values.size());
    const std::vector<float> nines(values.size(), 9);
    fields.Format(0, nines, 0, '<');
    fields.Format(2, nines, 0, '>');
    if (!fields.Format(1, values, precision, ';'))
        return std::nullopt;
    std::string found;
    std::string expected;
    for (size_t row = 0; row < values.size(); ++row) {
        std::array<char, support::kFixedTextCapacity> plain;
        (((expected += "9<") += support::FormatFixed(plain, values[row], precision)) += ";9>");
        for (size_t column = 0; column < 3; ++column) {
            std::array<char, support::kShortFieldBytes> copied;
            found.append(copied.data(), fields.Copy(column, row, copied.data()));
        }
    }
    return found == expected ? "" : found + " instead of " + expected;
}

} // namespace

// Columns whose numbers have about the same length, around every power of ten, with ties and zeros.
TEST(ShortFields, AreWhatIsWrittenOneByOne) {
    std::mt19937 random(1);
    for (int precision = -1; precision <= 6; ++precision) {
        const int decimals = precision < 0 ? 6 : precision;
        for (int digits = -3; digits <= 14; ++digits) {
            const double power = std::pow(10.0, digits - decimals);
            std::vector<float> values;
            for (int i = 0; i < 2000; ++i) {
                const double any = power * (static_cast<double>(random()) / 0x1p32);
                const double tie = std::ldexp(std::floor(std::ldexp(any, decimals)) + 0.5, -decimals);
                const double edge = std::nextafter(static_cast<float>(power), i % 2 == 0 ? HUGE_VALF : 0.0F);
                const double word = std::pow(10.0, 8 - decimals); // all of the last eight digits are zeros
                const double words = std::floor(any / word) * word;
                const double value = std::array{0.0, edge, edge, tie, tie, words, any}[size_t(i % 7)];
                values.push_back(static_cast<float>(random() % 2 == 0 ? value : -value));
            }
            for (const size_t count : {size_t{1}, size_t{3}, size_t{4}, size_t{6}, values.size()}) {
                const auto difference = Difference(std::span(values).first(count), precision);
                const bool hasFields = support::kHasShortFields && digits <= 12;
                EXPECT_EQ("", difference.value_or(hasFields ? "no fields" : ""))
                    << precision << ' ' << digits;
            }
        }
    }
}

TEST(ShortFields, LeaveOutColumnsWithLongNumbers) {
    for (const float value : {HUGE_VALF, -HUGE_VALF, NAN, -NAN, 1e13F, -1e13F, 1e38F}) {
        for (size_t at = 0; at < 6; ++at) {
            std::array<float, 6> values{};
            values[at] = value;
            EXPECT_FALSE(Difference(values, 0).has_value()) << value;
        }
    }
    EXPECT_FALSE(Difference(std::array{1e7F}, 6).has_value());
    EXPECT_FALSE(Difference(std::array{1.0F}, 7).has_value());
}
