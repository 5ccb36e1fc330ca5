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

// The most decimals of a number that is written from words of eight digits.
constexpr int kWordDecimals = 7;
// A sign, two words, a point, and what is written behind them and does not count.
constexpr size_t kWordsCapacity = 1 + 8 + 8 + 1 + 8;

// Eight digits of a number below 10^8, as characters; the first one is the lowest byte.
constexpr uint64_t EightDigits(uint32_t value) {
    // Each step splits all parts in two. The factors give the exact quotients of such small numbers.
    const uint32_t high = value / 10'000;
    uint64_t parts = high | uint64_t{value - high * 10'000} << 32;
    const uint64_t hundreds = (parts * 5243) >> 19 & 0x0000'007F'0000'007F;
    parts = hundreds | (parts - hundreds * 100) << 16;
    const uint64_t tens = (parts * 103) >> 10 & 0x000F'000F'000F'000F;
    parts = tens | (parts - tens * 10) << 8;
    return parts | 0x3030'3030'3030'3030;
}

// Stores a word without its first characters.
void StoreFrom(char* at, uint64_t characters, size_t first) {
    characters >>= 8 * first;
    if constexpr (std::endian::native == std::endian::big)
        characters = __builtin_bswap64(characters);
    std::memcpy(at, &characters, sizeof characters);
}

// How many digits a number below 10^18 is written with; no branch, as nothing could predict it.
size_t DigitsIn(uint64_t value) {
    constexpr unsigned kLogarithm = 1233; // of 2, in 4096 parts
    value |= 1;                           // a zero is a digit, too; powers of ten are even
    const auto least = static_cast<size_t>(static_cast<unsigned>(std::bit_width(value)) * kLogarithm >> 12);
    return least + (value >= kPowersOfTen.data()[least] ? 1 : 0);
}

// Writes a number below 10^16 that counts units of the last decimal; at most kWordDecimals of them. Touches
// kWordsCapacity bytes and returns the end of those that count. What is stored is not loaded again, which a
// processor could only do once it has left its queue.
char* WriteWords(char* at, uint64_t units, bool isNegative, size_t decimals) {
    constexpr uint64_t kWord = kPowersOfTen[8];
    const size_t count = std::max(DigitsIn(units), decimals + 1);
    *at = '-';
    at += isNegative ? 1 : 0;
    uint64_t last = 0;
    if (units < kWord) {
        last = EightDigits(static_cast<uint32_t>(units));
        StoreFrom(at, last, 8 - count);
    } else {
        last = EightDigits(static_cast<uint32_t>(units % kWord));
        StoreFrom(at, EightDigits(static_cast<uint32_t>(units / kWord)), 16 - count);
        StoreFrom(at + count - 8, last, 0);
    }
    at += count;
    if (decimals == 0)
        return at;
    at[-static_cast<std::ptrdiff_t>(decimals)] = '.';
    StoreFrom(at - decimals + 1, last, 8 - decimals);
    return at + 1;
}

char* WriteInteger(char* at, uint64_t value) {
    const size_t digits = DigitsIn(value);
    at += digits;
    WriteDigits(at, value, static_cast<int>(digits));
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

// How many units of the last decimal it is. With up to 11 decimals, ties to even as printf rounds: mantissa *
// 10^11 is below 2^61, so that whole numbers hold it without an error. The shift is above 0.
uint64_t RoundExactly(Magnitude magnitude, uint64_t unitsInOne) {
    const auto [mantissa, shift] = magnitude;
    if (shift >= 62)
        return 0; // less than half a unit of any decimal here
    const uint64_t scaled = mantissa * unitsInOne;
    const uint64_t units = scaled >> shift;
    const uint64_t rest = scaled - (units << shift);
    const uint64_t half = uint64_t{1} << (shift - 1);
    // Up above half a unit, and at half a unit when that makes it even. Not a branch: no processor could
    // predict it.
    return units + static_cast<uint64_t>(rest + units % 2 > half);
}

// Returns the end of what it writes.
char* WriteExactly(char* at, Magnitude magnitude, bool isNegative, int decimals) {
    const uint64_t unitsInOne = kPowersOfTen[static_cast<size_t>(decimals)];
    uint64_t units = 0;
    if (isNegative)
        *at++ = '-';
    if (magnitude.shift > 0) {
        units = RoundExactly(magnitude, unitsInOne);
        at = WriteInteger(at, units / unitsInOne);
    } else {
        at = WriteLargeInteger(at, magnitude.mantissa, -magnitude.shift);
    }
    if (decimals > 0) {
        *at++ = '.';
        at += decimals;
        WriteDigits(at, units % unitsInOne, decimals);
    }
    return at;
}

constexpr std::array<double, kWordDecimals + 1> kUnitsInOne{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

// The units of the last decimal in the magnitude, for at most kWordDecimals; nothing when they are too many
// or it is no number. The product of a float and such a power of ten has at most 41 bits, so a double holds
// it; its sum with 2^52 has no place for a fraction and is rounded to even there.
std::optional<uint64_t> UnitsIn(float magnitude, int decimals) {
    constexpr double kNoFraction = 0x1p52;
    const double units = double{magnitude} * kUnitsInOne.data()[decimals];
    if (!(units < kNoFraction))
        return std::nullopt;
    return std::bit_cast<uint64_t>(units + kNoFraction) - std::bit_cast<uint64_t>(kNoFraction);
}

// Any value with any number of decimals. Not a part of FormatFixed, which would have to save more for it.
[[gnu::noinline]] std::string_view FormatAny(std::span<char> buffer, float value, int decimals) {
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

} // namespace

std::string_view FormatFixed(std::span<char> buffer, float value, int precision) {
    const int decimals = precision < 0 ? 6 : std::min(precision, kMaxFixedDecimals);
    if (decimals <= kWordDecimals && buffer.size() >= kWordsCapacity) {
        if (const std::optional<uint64_t> units = UnitsIn(std::abs(value), decimals)) {
            char* const begin = buffer.data();
            return {begin, WriteWords(begin, *units, std::signbit(value), static_cast<size_t>(decimals))};
        }
    }
    return FormatAny(buffer, value, decimals);
}

} // namespace support
