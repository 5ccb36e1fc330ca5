#include "support/FixedText.h"

#include "support/Assertion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <system_error>

namespace support {

namespace {

constexpr int kPieceDigits = 18;
constexpr std::array<uint64_t, kPieceDigits + 1> kPowersOfTen = [] {
    std::array<uint64_t, kPieceDigits + 1> powers{1};
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

// A sign, the digits of the largest float, a point, the decimals.
constexpr size_t kExactCapacity = 1 + 39 + 1 + kMaxFastDecimals;

// The digits of `value`, as many as `count`, before `end`.
void WriteDigits(char* end, uint64_t value, int count) {
    for (; count >= 4; count -= 4) { // each step waits for the one before, so fewer are faster
        const uint64_t quotient = value / 10'000;
        const size_t four = value - quotient * 10'000;
        end -= 4;
        std::memcpy(end, &kPairs[four / 100 * 2], 2);
        std::memcpy(end + 2, &kPairs[four % 100 * 2], 2);
        value = quotient;
    }
    if (count >= 2) {
        end -= 2;
        std::memcpy(end, &kPairs[value % 100 * 2], 2);
        value /= 100;
    }
    if (count % 2 == 1)
        end[-1] = static_cast<char>('0' + value % 10);
}

// The value is below 10^18.
int CountDigits(uint64_t value) {
    int count = 1;
    while (value >= kPowersOfTen[static_cast<size_t>(count)])
        ++count;
    return count;
}

char* WriteInteger(char* at, uint64_t value) {
    const int digits = CountDigits(value);
    at += digits;
    WriteDigits(at, value, digits);
    return at;
}

// mantissa * 2^shift, which is below 2^128.
char* WriteLargeInteger(char* at, uint32_t mantissa, int shift) {
    __extension__ using Wide = unsigned __int128;
    constexpr uint64_t kPiece = kPowersOfTen[kPieceDigits];
    Wide rest = Wide{mantissa} << shift;
    std::array<uint64_t, 2> pieces; // the last digits first
    size_t count = 0;
    while (rest >= kPiece) {
        const Wide quotient = rest / kPiece;
        pieces[count++] = static_cast<uint64_t>(rest - quotient * kPiece);
        rest = quotient;
    }
    at = WriteInteger(at, static_cast<uint64_t>(rest));
    while (count > 0) {
        at += kPieceDigits;
        WriteDigits(at, pieces[--count], kPieceDigits);
    }
    return at;
}

// A float's magnitude is mantissa / 2^shift.
struct Magnitude {
    uint32_t mantissa;
    int shift;
};

// Nothing for infinity and not-a-number.
std::optional<Magnitude> MagnitudeOf(uint32_t bits) {
    constexpr int kMantissaBits = 23;
    constexpr uint32_t kHiddenBit = uint32_t{1} << kMantissaBits;
    constexpr int kBias = 127 + kMantissaBits;
    constexpr int kNoNumber = 255;
    const int exponent = static_cast<int>(bits >> kMantissaBits) & kNoNumber;
    if (exponent == kNoNumber)
        return std::nullopt;
    const uint32_t field = bits & (kHiddenBit - 1);
    return Magnitude{exponent == 0 ? field : field | kHiddenBit, kBias - std::max(exponent, 1)};
}

struct Rounded {
    uint64_t integer;
    uint64_t fraction; // in units of the last decimal
};

// With up to 11 decimals, ties to even as printf rounds: mantissa * 10^11 is below 2^61, so that whole
// numbers hold it without an error. The shift is above 0.
Rounded RoundExactly(Magnitude magnitude, int decimals) {
    const auto [mantissa, shift] = magnitude;
    if (shift >= 62)
        return {0, 0}; // less than half a unit of any decimal here
    const uint64_t unit = kPowersOfTen[static_cast<size_t>(decimals)];
    uint64_t integer = uint64_t{mantissa} >> shift;
    const uint64_t scaled = (mantissa - (integer << shift)) * unit;
    uint64_t fraction = scaled >> shift;
    const uint64_t rest = scaled - (fraction << shift);
    const uint64_t half = uint64_t{1} << (shift - 1);
    const uint64_t odd = (integer * unit + fraction) % 2;
    // Up above half a unit, and at half a unit when that makes it even. Not a branch: no processor could
    // predict it.
    fraction += static_cast<uint64_t>(rest + odd > half);
    if (fraction == unit) {
        fraction = 0;
        ++integer;
    }
    return {integer, fraction};
}

// Returns the end of what it writes.
char* WriteExactly(char* at, Magnitude magnitude, bool isNegative, int decimals) {
    if (isNegative)
        *at++ = '-';
    uint64_t fraction = 0;
    if (magnitude.shift > 0) {
        const Rounded rounded = RoundExactly(magnitude, decimals);
        at = WriteInteger(at, rounded.integer);
        fraction = rounded.fraction;
    } else {
        at = WriteLargeInteger(at, magnitude.mantissa, -magnitude.shift);
    }
    if (decimals > 0) {
        *at++ = '.';
        at += decimals;
        if (fraction == 0)
            std::memset(at - decimals, '0', static_cast<size_t>(decimals));
        else
            WriteDigits(at, fraction, decimals);
    }
    return at;
}

} // namespace

std::string_view FormatFixed(std::span<char> buffer, float value, int precision) {
    const int decimals = precision < 0 ? 6 : std::min(precision, kMaxFixedDecimals);
    char* const begin = buffer.data();
    if (decimals <= kMaxFastDecimals && buffer.size() >= kExactCapacity) {
        if (const std::optional<Magnitude> magnitude = MagnitudeOf(std::bit_cast<uint32_t>(value)))
            return {begin, WriteExactly(begin, *magnitude, std::signbit(value), decimals)};
    }
    const auto [end, error] =
        std::to_chars(begin, begin + buffer.size(), value, std::chars_format::fixed, decimals);
    Assert(error == std::errc(), "error == std::errc()");
    return {begin, static_cast<size_t>(end - begin)};
}

} // namespace support
