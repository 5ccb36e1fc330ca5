// Converts one field of a sample row into a number: plain decimals of usual lengths eight characters at once.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Tracelyn {

namespace field {

// A word holds eight characters; the last one is the highest byte. Characters before the field are zero.
using Word = uint64_t;

constexpr size_t kWordBytes = sizeof(Word);
// By decimals, the last one for numbers without a point. The product with one is rounded to the float that
// the quotient would be rounded to: of a number below 10^7 and a power up to 10^7, it is at least 2^-49 of
// itself away from the middle of two floats, and the product's error is at most 2^-52 of it.
constexpr std::array<double, kWordBytes + 1> kFactors{1e0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e0};

// The same for numbers of up to two words; these are divided.
constexpr std::array<double, 2 * kWordBytes + 1> kDivisors{1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                                                           1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e0};

constexpr Word Repeat(Word byte) {
    return byte * 0x0101010101010101;
}

// Digits become their values. The field begins at `at` and has `count` characters, 1 to 8; with another
// number the word has no meaning.
inline Word LoadValues(const char* at, size_t count) {
    Word word = 0;
    std::memcpy(&word, at, kWordBytes);
    if constexpr (std::endian::native == std::endian::big)
        word = __builtin_bswap64(word);
    return (word ^ Repeat('0')) << ((0 - 8 * count) % 64);
}

constexpr bool AreDigits(Word values) {
    return (((values + Repeat(0x76)) | values) & Repeat(0x80)) == 0;
}

// The highest bit of the first byte that is a decimal point; 0 without one, which counts as having eight
// decimals.
constexpr Word FindPoint(Word values) {
    const Word isPoint = values ^ Repeat('.' ^ '0');
    const Word found = (isPoint - Repeat(1)) & ~isPoint & Repeat(0x80);
    return found & (0 - found);
}

// Moves the characters before the point into its place, `before` into the first one.
constexpr Word ClosePoint(Word values, Word point, Word before) {
    const Word below = (point >> 7) - 1;
    const Word above = ~((point << 1) - 1);
    const Word closed = (values & below) << 8 | before;
    return (values & above) | (point == 0 ? values : closed);
}

constexpr size_t DecimalsBehind(Word point) {
    return static_cast<size_t>(std::countl_zero(point)) / 8;
}

// Of eight digits; each step joins neighbours.
constexpr uint32_t NumberOf(Word values) {
    values = (values * (10 * 256 + 1)) >> 8 & 0x00FF00FF00FF00FF;
    values = (values * (100 * 65536 + 1)) >> 16 & 0x0000FFFF0000FFFF;
    return static_cast<uint32_t>((values * (10000 * (Word{1} << 32) + 1)) >> 32);
}

inline float WithSign(double magnitude, bool negative) {
    const auto bits = std::bit_cast<uint32_t>(static_cast<float>(magnitude));
    return std::bit_cast<float>(bits | uint32_t{negative} << 31);
}

// The general way, for whatever is no plain decimal.
float OddFloat(const char* begin, const char* end);
int32_t OddInteger(const char* begin, const char* end);

// Of more than eight characters, the sign not counted. `number` is behind the sign.
float LongFloat(const char* begin, const char* number, const char* end);
int32_t LongInteger(const char* begin, const char* number, const char* end);

} // namespace field

// The number of the field from `begin` to `end`: what support::ParseFloatField gives for its text, bit for
// bit.
inline float FloatOfField(const char* begin, const char* end) {
    using namespace field;
    const bool negative = *begin == '-';
    const char* const number = begin + (negative ? 1 : 0);
    const auto count = static_cast<size_t>(end - number);
    if (count - 1 >= kWordBytes)
        return count == 0 ? OddFloat(begin, end) : LongFloat(begin, number, end);
    const Word values = LoadValues(number, count);
    const Word point = FindPoint(values);
    const Word digits = ClosePoint(values, point, 0);
    if (!AreDigits(digits) || (count == 1 && point != 0))
        return OddFloat(begin, end);
    const auto value = static_cast<int32_t>(NumberOf(digits));
    return WithSign(value * kFactors[DecimalsBehind(point)], negative);
}

// As support::ParseIntegerField.
inline int32_t IntegerOfField(const char* begin, const char* end) {
    using namespace field;
    const bool negative = *begin == '-';
    const char* const number = begin + (negative ? 1 : 0);
    const auto count = static_cast<size_t>(end - number);
    if (count - 1 >= kWordBytes)
        return count == 0 ? OddInteger(begin, end) : LongInteger(begin, number, end);
    const Word values = LoadValues(number, count);
    if (!AreDigits(values))
        return OddInteger(begin, end);
    const uint32_t sign = 0 - uint32_t{negative};
    return static_cast<int32_t>((NumberOf(values) ^ sign) - sign);
}

} // namespace Tracelyn
