// Numbers from UTF-8 text, read as the C library reads them in the "C" locale, without allocating and
// whatever locale the process has. A field of a sample row gives the number at its start; an attribute must
// be a number from end to end.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace support {

// Leading white space, a sign, decimal digits up to the first other character; none = 0. Saturates.
int32_t ParseIntegerField(std::string_view text);

// The longest number at the start as strtod reads it (decimal, hexadecimal, infinity, not-a-number; none =
// 0), rounded to double and then narrowed to float.
float ParseFloatField(std::string_view text);

// Decimal, "0x" hexadecimal or leading-zero octal as strtol reads it with base 0. Saturates.
// Nothing when there is no number or when characters remain after it.
std::optional<int32_t> ParseIntegerAttribute(std::string_view text);

// As ParseFloatField; nothing when there is no number or when characters remain after it.
std::optional<float> ParseFloatAttribute(std::string_view text);

// Hexadecimal digits with an optional sign and "0x" as strtol reads them with base 16; none = 0. Saturates,
// so colours from 0x80000000 on read as 0x7fffffff.
int32_t ParseHexColor(std::string_view text);

} // namespace support
