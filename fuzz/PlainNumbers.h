// Numbers as the C library reads and writes them, to compare with this system's own readers and writer. The
// fuzzer and the tests of support do so.
#pragma once

#include "support/FixedText.h"
#include "support/NumberText.h"
#include "support/ShortFields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

// Any not-a-number of the same sign counts as the same.
inline bool IsSameNumber(float a, float b) {
    if (std::isnan(a) && std::isnan(b))
        return std::signbit(a) == std::signbit(b);
    return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

// What the library reads from the text; `end` gets where it ended. (Some versions give a sign to no number.)
inline float PlainFloat(const std::string& text, char** end = nullptr) {
    char* stop = nullptr;
    const auto number = static_cast<float>(std::strtod(text.c_str(), &stop));
    if (end != nullptr)
        *end = stop;
    return stop == text.c_str() ? 0 : number;
}

// Reads the text in every way. Gives the promise that a reader does not keep, or nothing.
inline std::string DifferenceFromPlainNumber(std::string_view view) {
    const std::string text(view);
    const char* const begin = text.c_str();
    char* end = nullptr;
    const auto isWhole = [&] { return end != begin && end == begin + text.size(); };
    // The library's long has 64 bits here and there; it is held to 32.
    const auto integer = [&](int base) {
        constexpr long long kMin = std::numeric_limits<int32_t>::min();
        constexpr long long kMax = std::numeric_limits<int32_t>::max();
        return static_cast<int32_t>(std::clamp(std::strtoll(begin, &end, base), kMin, kMax));
    };
    if (support::ParseIntegerField(view) != integer(10))
        return "an integer field as strtol: " + text;
    if (support::ParseHexColor(view) != integer(16))
        return "a colour as strtol: " + text;
    const std::optional<int32_t> whole(integer(0));
    if (support::ParseIntegerAttribute(view) != (isWhole() ? whole : std::nullopt))
        return "an integer attribute as strtol, if it is whole: " + text;
    const float number = PlainFloat(text, &end);
    if (!IsSameNumber(support::ParseFloatField(view), number))
        return "a float field as strtod: " + text;
    const std::optional<float> attribute = support::ParseFloatAttribute(view);
    if (attribute.has_value() != isWhole() || !IsSameNumber(attribute.value_or(number), number))
        return "a float attribute as strtod, if it is whole: " + text;
    return {};
}

// Writes the value with so many decimals, alone and as a column if that has fields.
inline std::string DifferenceFromPlainText(float value, int precision) {
    std::array<char, support::kFixedTextCapacity> buffer = {};
    std::array<char, support::kFixedTextCapacity + 1> printed = {};
    const int decimals = precision < 0 ? 6 : std::min(precision, support::kMaxFixedDecimals);
    std::snprintf(printed.data(), printed.size(), "%1.*f", decimals, double{value});
    std::string expected = printed.data();
#ifdef __MINGW32__ // whose library forgets the sign
    if (std::isnan(value) && std::signbit(value))
        expected = "-nan";
#endif
    const std::string text(support::FormatFixed(buffer, value, precision));
    if (text != expected)
        return text + " where the library writes " + expected;
    support::CShortFields fields(1, 1);
    if (!fields.Format(0, {&value, 1}, precision, ','))
        return {};
    std::array<char, support::kShortFieldBytes> copied = {};
    const std::string field(copied.data(), fields.Copy(0, 0, copied.data()));
    return field == expected + ',' ? std::string() : field + " as a field of " + expected;
}
