#include "support/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

namespace support {

namespace {

constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

struct Cursor {
    const char* at;
    const char* end;

    explicit Cursor(std::string_view text) : at(text.data()), end(text.data() + text.size()) {}

    char Peek(std::ptrdiff_t offset = 0) const { return end - at > offset ? at[offset] : '\0'; }

    void SkipSpace() {
        while (at != end && IsSpace(*at))
            ++at;
    }

    // Steps over a sign; true for a minus.
    bool TakeSign() {
        const char sign = Peek();
        if (sign == '-' || sign == '+')
            ++at;
        return sign == '-';
    }

    bool AtHexPrefix() const { return Peek() == '0' && (Peek(1) == 'x' || Peek(1) == 'X'); }
};

// A number and where the text goes on behind it; end is null when there is none.
template <class T>
struct Reading {
    T value = 0;
    const char* end = nullptr;
};

Reading<int32_t> ReadInteger(std::string_view text, int base) {
    Cursor cursor(text);
    cursor.SkipSpace();
    const bool negative = cursor.TakeSign();
    if ((base == 0 || base == 16) && cursor.AtHexPrefix() && IsHexDigit(cursor.Peek(2))) {
        cursor.at += 2;
        base = 16;
    } else if (base == 0) {
        base = cursor.Peek() == '0' ? 8 : 10;
    }

    uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(cursor.at, cursor.end, magnitude, base);
    if (error == std::errc::invalid_argument)
        return {};
    constexpr uint64_t kLargest = std::numeric_limits<int32_t>::max();
    if (error == std::errc::result_out_of_range)
        magnitude = kLargest + 1;
    magnitude = std::min(magnitude, negative ? kLargest + 1 : kLargest);
    const auto value = static_cast<int64_t>(magnitude);
    return {static_cast<int32_t>(negative ? -value : value), end};
}

// Whether a number beyond the range of double is beyond its large end: the decimal (or binary) power of the
// first significant digit, with the written exponent added, is positive.
bool IsHuge(std::string_view number, bool hex) {
    const std::size_t exponentAt = number.find_first_of(hex ? "pP" : "eE");
    int64_t power = 0;
    if (exponentAt != std::string_view::npos)
        power = ReadInteger(number.substr(exponentAt + 1), 10).value;

    const std::string_view digits = number.substr(0, exponentAt);
    const std::size_t first = digits.find_first_not_of("0.");
    if (first == std::string_view::npos)
        return false;
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const int64_t place = static_cast<int64_t>(point) - static_cast<int64_t>(first);
    return power + place * (hex ? 4 : 1) > 0;
}

// A hexadecimal number without an exponent of two signs: from_chars would take "p+-1" as one.
std::string_view WithoutExponentOfTwoSigns(std::string_view number) {
    const std::size_t exponentAt = number.find_first_of("pP");
    const bool hasTwoSigns =
        exponentAt != std::string_view::npos && number.substr(exponentAt + 1).starts_with("+-");
    return hasTwoSigns ? number.substr(0, exponentAt) : number;
}

Reading<double> ReadFloat(std::string_view text) {
    Cursor cursor(text);
    cursor.SkipSpace();
    const bool negative = cursor.TakeSign();
    if (cursor.Peek() == '-')
        return {}; // from_chars would take a second sign

    const bool hex = cursor.AtHexPrefix() &&
                     (IsHexDigit(cursor.Peek(2)) || (cursor.Peek(2) == '.' && IsHexDigit(cursor.Peek(3))));
    if (hex) {
        cursor.at += 2;
        const auto left = static_cast<std::size_t>(cursor.end - cursor.at);
        cursor = Cursor(WithoutExponentOfTwoSigns({cursor.at, left}));
    }

    double value = 0;
    const auto [end, error] = std::from_chars(cursor.at, cursor.end, value,
                                              hex ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::invalid_argument)
        return {};
    if (error == std::errc::result_out_of_range) {
        const std::string_view number(cursor.at, static_cast<std::size_t>(end - cursor.at));
        value = IsHuge(number, hex) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return {negative ? -value : value, end};
}

template <class T>
bool IsWhole(const Reading<T>& reading, std::string_view text) {
    return reading.end != nullptr && reading.end == text.data() + text.size();
}

} // namespace

int32_t ParseIntegerField(std::string_view text) {
    return ReadInteger(text, 10).value;
}

float ParseFloatField(std::string_view text) {
    return static_cast<float>(ReadFloat(text).value);
}

std::optional<int32_t> ParseIntegerAttribute(std::string_view text) {
    const Reading<int32_t> reading = ReadInteger(text, 0);
    return IsWhole(reading, text) ? std::optional(reading.value) : std::nullopt;
}

std::optional<float> ParseFloatAttribute(std::string_view text) {
    const Reading<double> reading = ReadFloat(text);
    return IsWhole(reading, text) ? std::optional(static_cast<float>(reading.value)) : std::nullopt;
}

int32_t ParseHexColor(std::string_view text) {
    return ReadInteger(text, 16).value;
}

} // namespace support
