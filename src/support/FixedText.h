// Numbers with a fixed count of decimals, byte for byte as printf writes them in the "C" locale.
#pragma once

#include "support/Limits.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace support {

inline constexpr int kMaxFixedDecimals = limits::kMaxDecimals;
// Numbers with more decimals than this go through the standard library, which takes several times as long.
inline constexpr int kMaxFastDecimals = 11;

// Enough for any value: sign, 39 digits, point, decimals.
inline constexpr std::size_t kFixedTextCapacity = 1 + 39 + 1 + kMaxFixedDecimals;

// What printf("%1.*f", precision, value) writes. A negative precision means 6 decimals, more than
// kMaxFixedDecimals means those. Returns the written front of the buffer; a buffer that is too small is a
// programming error.
std::string_view FormatFixed(std::span<char> buffer, float value, int precision);

} // namespace support
