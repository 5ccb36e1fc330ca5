#include "FixedText.h"

#include "Assertion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <system_error>

namespace support {

namespace {

constexpr std::array<uint64_t, MaxFastDecimals + 1> kPowersOfTen = [] {
    std::array<uint64_t, MaxFastDecimals + 1> powers{1};
    for (size_t i = 1; i < powers.size(); ++i)
        powers[i] = 10 * powers[i - 1];
    return powers;
}();

// "00" to "99".
constexpr std::array<char, 200> kPairs = [] {
    std::array<char, 200> pairs{};
    for (size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// A sign, ten digits, a point, the decimals.
constexpr size_t kExactCapacity = 1 + 10 + 1 + MaxFastDecimals;

// The digits of `value`, as many as `count`, before `end`.
void WriteDigits(char* end, uint64_t value, int count) {
    for (; count >= 2; count -= 2) {
        end -= 2;
        std::memcpy(end, &kPairs[value % 100 * 2], 2);
        value /= 100;
    }
    if (count == 1)
        end[-1] = static_cast<char>('0' + value % 10);
}

int CountDigits(uint32_t value) {
    int count = 1;
    while (count < 10 && value >= kPowersOfTen[static_cast<size_t>(count)])
        ++count;
    return count;
}

struct Rounded {
    uint32_t integer;
    uint64_t fraction; // in units of the last decimal
};

// The magnitude with up to 11 decimals, ties to even as printf rounds: mantissa * 10^11 is below 2^61, so
// that whole numbers hold it without an error. Nothing for values from 2^32 on and for what is no number.
std::optional<Rounded> RoundExactly(uint32_t magnitude, int decimals) {
    constexpr int kMantissaBits = 23;
    constexpr uint32_t kHiddenBit = uint32_t{1} << kMantissaBits;
    constexpr int kBias = 127 + kMantissaBits;
    const int exponent = static_cast<int>(magnitude >> kMantissaBits);
    const uint32_t field = magnitude & (kHiddenBit - 1);
    const uint32_t mantissa = exponent == 0 ? field : field | kHiddenBit;
    const int shift = kBias - std::max(exponent, 1); // the value is mantissa / 2^shift
    if (shift < -8)
        return std::nullopt;
    if (shift <= 0)
        return Rounded{mantissa << -shift, 0};
    if (shift >= 62)
        return Rounded{0, 0}; // less than half a unit of any decimal here
    const uint64_t unit = kPowersOfTen[static_cast<size_t>(decimals)];
    uint64_t integer = uint64_t{mantissa} >> shift;
    const uint64_t scaled = (mantissa - (integer << shift)) * unit;
    uint64_t fraction = scaled >> shift;
    const uint64_t rest = scaled - (fraction << shift);
    const uint64_t half = uint64_t{1} << (shift - 1);
    const uint64_t odd = (integer * unit + fraction) % 2;
    // Up above half a unit, and at half a unit when that makes it even; no branch, for it is a coin's toss.
    fraction += static_cast<uint64_t>(rest + odd > half);
    if (fraction == unit) {
        fraction = 0;
        ++integer;
    }
    return Rounded{static_cast<uint32_t>(integer), fraction};
}

} // namespace

std::string_view FormatFixed(std::span<char> buffer, float value, int precision) {
    const int decimals = precision < 0 ? 6 : std::min(precision, MaxFixedDecimals);
    char* const begin = buffer.data();
    if (decimals <= MaxFastDecimals && buffer.size() >= kExactCapacity) {
        const auto bits = std::bit_cast<uint32_t>(value);
        if (const std::optional<Rounded> rounded = RoundExactly(bits & 0x7FFF'FFFFU, decimals)) {
            char* at = begin;
            if (bits != (bits & 0x7FFF'FFFFU))
                *at++ = '-';
            const int digits = CountDigits(rounded->integer);
            at += digits;
            WriteDigits(at, rounded->integer, digits);
            if (decimals > 0) {
                *at++ = '.';
                at += decimals;
                WriteDigits(at, rounded->fraction, decimals);
            }
            return {begin, static_cast<size_t>(at - begin)};
        }
    }
    const auto [end, error] =
        std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, decimals);
    Assert(error == std::errc(), "error == std::errc()");
    return {begin, static_cast<size_t>(end - begin)};
}

} // namespace support
