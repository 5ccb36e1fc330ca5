#include "FixedText.h"

#include "Assertion.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace support {

std::string_view FormatFixed(std::span<char> buffer, double value, int precision) {
    const int decimals = precision < 0 ? 6 : std::min(precision, MaxFixedDecimals);
    char* const begin = buffer.data();
    const auto [end, error] =
        std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, decimals);
    Assert(error == std::errc(), "error == std::errc()");
    return {begin, static_cast<std::size_t>(end - begin)};
}

} // namespace support
