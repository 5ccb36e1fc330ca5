// The number readers and the number writer against the C library.
#include "FuzzInput.h"
#include "support/FixedText.h"
#include "support/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace {

struct Integer {
    int32_t value;
    bool isWhole;
};

Integer ReadWithStrtol(const std::string& text, int base) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, base);
    constexpr long kMin = std::numeric_limits<int32_t>::min();
    constexpr long kMax = std::numeric_limits<int32_t>::max();
    const bool isWhole = end != text.c_str() && end == text.c_str() + text.size();
    return {static_cast<int32_t>(std::clamp(value, kMin, kMax)), isWhole};
}

bool AreSame(float a, float b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

void CheckReaders(std::string_view view) {
    const std::string text(view);
    Require(support::ParseIntegerField(view) == ReadWithStrtol(text, 10).value, "an integer field as strtol");
    Require(support::ParseHexColor(view) == ReadWithStrtol(text, 16).value, "a colour as strtol");
    const Integer integer = ReadWithStrtol(text, 0);
    const auto attribute = support::ParseIntegerAttribute(view);
    Require(attribute.has_value() == integer.isWhole, "an integer attribute is a whole number");
    Require(!attribute || *attribute == integer.value, "an integer attribute as strtol");

    char* end = nullptr;
    const auto expected = static_cast<float>(std::strtod(text.c_str(), &end));
    const bool isWhole = end != text.c_str() && end == text.c_str() + text.size();
    Require(AreSame(support::ParseFloatField(view), expected), "a float field as strtod");
    const auto number = support::ParseFloatAttribute(view);
    Require(number.has_value() == isWhole, "a float attribute is a whole number");
    Require(!number || AreSame(*number, expected), "a float attribute as strtod");
}

void CheckWriter(float value, int precision) {
    std::array<char, support::kFixedTextCapacity> buffer;
    const std::string_view text = support::FormatFixed(buffer, value, precision);
    std::array<char, support::kFixedTextCapacity + 1> expected;
    const int decimals = std::min(precision, support::kMaxFixedDecimals);
    const int size = std::snprintf(expected.data(), expected.size(), "%1.*f", decimals, double{value});
    Require(text == std::string_view(expected.data(), static_cast<size_t>(size)), "a number as printf");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = TextOf(data, size);
    CheckReaders(text);
    // The same without a terminator behind it, for reads past the end.
    const std::vector<char> exact(text.begin(), text.end());
    CheckReaders({exact.data(), exact.size()});

    float value = 0;
    int precision = 0;
    if (size >= sizeof value + sizeof precision) {
        std::memcpy(&value, data, sizeof value);
        std::memcpy(&precision, data + sizeof value, sizeof precision);
        CheckWriter(value, precision);
        CheckWriter(value, precision % 16);
        CheckWriter(support::ParseFloatField(text), precision % 1100);
    }
    return 0;
}
