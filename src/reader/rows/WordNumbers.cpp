#include "reader/rows/WordNumbers.h"

#ifdef __SSE2__

#include <emmintrin.h>

namespace Tracelyn {

namespace {

using field::kWordBytes;
using field::Word;

__m128i Load(const Word* words) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(words));
}

// The four numbers of eight digits in two pairs of words.
__m128i NumbersOf(__m128i first, __m128i second) {
    const auto joined = [](__m128i digits) {
        const __m128i even = _mm_and_si128(digits, _mm_set1_epi16(0xFF));
        const __m128i pairs =
            _mm_add_epi16(_mm_mullo_epi16(even, _mm_set1_epi16(10)), _mm_srli_epi16(digits, 8));
        return _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
    };
    return _mm_madd_epi16(_mm_packs_epi32(joined(first), joined(second)), _mm_set1_epi32(1 << 16 | 10000));
}

// The first decimal points of two words.
struct Points {
    __m128i at;    // all bits of the point's byte
    __m128i below; // all bits below it; none without a point
    __m128i none;  // all bits without a point
};

Points FindPoints(__m128i values) {
    const __m128i isPoint = _mm_cmpeq_epi8(values, _mm_set1_epi8('.' ^ '0'));
    const __m128i first = _mm_and_si128(isPoint, _mm_sub_epi64(_mm_setzero_si128(), isPoint));
    const __m128i below = _mm_sub_epi64(first, _mm_set1_epi64x(1));
    const __m128i none = _mm_shuffle_epi32(_mm_srai_epi32(below, 31), 0xF5);
    return {_mm_sub_epi64(_mm_slli_epi64(first, 8), first), _mm_andnot_si128(none, below), none};
}

// Moves what is before the points into their places.
__m128i ClosePoints(__m128i values, const Points& points) {
    const __m128i cleared = _mm_andnot_si128(points.at, values);
    const __m128i before = _mm_and_si128(cleared, points.below);
    return _mm_or_si128(_mm_xor_si128(cleared, before), _mm_slli_epi64(before, 8));
}

// Of two words: the characters behind the points, in 64 bits each; eight without a point.
__m128i DecimalsBehind(const Points& points) {
    const __m128i ones = _mm_set1_epi8(1);
    return _mm_sad_epu8(_mm_andnot_si128(_mm_or_si128(points.at, points.below), ones), _mm_setzero_si128());
}

// By decimals; the last is for numbers without a point.
constexpr float kShortDivisors[kWordBytes + 1]{1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F, 1e6F, 1e7F, 1e0F};

// The number in each word.
int FirstOf(__m128i pair) {
    return _mm_cvtsi128_si32(pair);
}

int SecondOf(__m128i pair) {
    return _mm_extract_epi16(pair, 4);
}

__m128d DivisorsFor(__m128i decimals) {
    return _mm_setr_pd(field::kDivisors.data()[FirstOf(decimals)],
                       field::kDivisors.data()[SecondOf(decimals)]);
}

// What the functions below have come upon.
class COddFields {
public:
    void Look(__m128i digits) { Look(digits, _mm_set1_epi8(9)); }
    void Look(__m128i digits, __m128i largest) {
        m_Found = _mm_or_si128(m_Found, _mm_subs_epu8(digits, largest));
    }
    // A point behind all digits may be all that the field has.
    void Look(const Points& points) { m_Found = _mm_or_si128(m_Found, _mm_srli_epi64(points.at, 56)); }
    bool IsAny() const { return _mm_movemask_epi8(_mm_cmpeq_epi8(m_Found, _mm_setzero_si128())) != 0xFFFF; }

private:
    __m128i m_Found = _mm_setzero_si128();
};

void Store(float* numbers, __m128 magnitudes, const uint32_t* signs) {
    const __m128i bits = _mm_load_si128(reinterpret_cast<const __m128i*>(signs));
    _mm_storeu_ps(numbers, _mm_or_ps(magnitudes, _mm_castsi128_ps(bits)));
}

// The digits of two words and how many are decimals, as DecimalsBehind.
struct Digits {
    __m128i values;
    __m128i decimals;
};

Digits ShortDigits(const Word* words, COddFields& odd) {
    const __m128i values = Load(words);
    const Points points = FindPoints(values);
    const __m128i digits = ClosePoints(values, points);
    odd.Look(digits);
    odd.Look(points);
    return {digits, DecimalsBehind(points)};
}

// With a point, number and power of ten are floats as they are, and the quotient is the float nearest to what
// is written; without one, only the number is rounded.
bool ReadShort(const FieldWords& words, size_t count, float* numbers) {
    COddFields odd;
    for (size_t i = 0; i < count; i += 4) {
        const Digits first = ShortDigits(words.low.data() + i, odd);
        const Digits second = ShortDigits(words.low.data() + i + 2, odd);
        const __m128 divisors =
            _mm_setr_ps(kShortDivisors[FirstOf(first.decimals)], kShortDivisors[SecondOf(first.decimals)],
                        kShortDivisors[FirstOf(second.decimals)], kShortDivisors[SecondOf(second.decimals)]);
        const __m128 magnitudes = _mm_cvtepi32_ps(NumbersOf(first.values, second.values));
        Store(numbers + i, _mm_div_ps(magnitudes, divisors), words.signs.data() + i);
    }
    return !odd.IsAny();
}

// Of two numbers of up to 16 characters; their high words as values, 16 decimals without a point.
struct LongDigits {
    __m128i low;
    __m128i high;
    __m128i decimals;
};

[[gnu::always_inline]] inline LongDigits DigitsOf(const FieldWords& words, size_t i, COddFields& odd) {
    const __m128i low = Load(words.low.data() + i);
    const __m128i high = Load(words.high.data() + i);
    const Points lowPoints = FindPoints(low);
    const Points highPoints = FindPoints(high);
    const __m128i none = lowPoints.none;
    const __m128i moved = _mm_andnot_si128(none, _mm_srli_epi64(high, 56));
    const LongDigits digits{.low = _mm_or_si128(ClosePoints(low, lowPoints), moved),
                            .high = _mm_or_si128(_mm_and_si128(none, ClosePoints(high, highPoints)),
                                                 _mm_andnot_si128(none, _mm_slli_epi64(high, 8))),
                            .decimals = _mm_add_epi64(DecimalsBehind(lowPoints),
                                                      _mm_and_si128(none, DecimalsBehind(highPoints)))};
    odd.Look(digits.low);
    odd.Look(digits.high);
    odd.Look(lowPoints);
    return digits;
}

// The first two of four numbers, each from its eight high and its eight low digits.
__m128d Joined(__m128i high, __m128i low) {
    return _mm_add_pd(_mm_mul_pd(_mm_cvtepi32_pd(high), _mm_set1_pd(1e8)), _mm_cvtepi32_pd(low));
}

// Of up to 15 characters: double holds all such numbers, so quotients and roundings are those of
// FloatOfField.
bool ReadLong(const FieldWords& words, size_t count, float* numbers) {
    COddFields odd;
    for (size_t i = 0; i < count; i += 4) {
        const LongDigits one = DigitsOf(words, i, odd);
        const LongDigits other = DigitsOf(words, i + 2, odd);
        const __m128i low = NumbersOf(one.low, other.low);
        const __m128i high = NumbersOf(one.high, other.high);
        const __m128d first = _mm_div_pd(Joined(high, low), DivisorsFor(one.decimals));
        const __m128d second = _mm_div_pd(Joined(_mm_shuffle_epi32(high, 0xEE), _mm_shuffle_epi32(low, 0xEE)),
                                          DivisorsFor(other.decimals));
        Store(numbers + i, _mm_movelh_ps(_mm_cvtpd_ps(first), _mm_cvtpd_ps(second)), words.signs.data() + i);
    }
    return !odd.IsAny();
}

// What is the same in all fields with so many decimals, 1 to 7.
class CFixedPoint {
public:
    explicit CFixedPoint(size_t decimals)
        : m_Point(_mm_set1_epi64x(ByteBefore('.' ^ '0', decimals))),
          m_Largest(_mm_set1_epi64x(ByteBefore(9, decimals) ^ static_cast<int64_t>(field::Repeat(9)))),
          m_Below(_mm_set1_epi64x(ByteBefore(1, decimals) - 1)) {}

    // The digits in two words of values.
    __m128i DigitsOf(const Word* words, COddFields& odd) const {
        const __m128i digits = _mm_xor_si128(Load(words), m_Point);
        odd.Look(digits, m_Largest);
        const __m128i before = _mm_and_si128(digits, m_Below);
        return _mm_or_si128(_mm_xor_si128(digits, before), _mm_slli_epi64(before, 8));
    }

private:
    // A word with that byte before the decimals.
    static int64_t ByteBefore(int64_t byte, size_t decimals) {
        return byte << (8 * (kWordBytes - 1 - decimals));
    }

    __m128i m_Point;   // its value in its place
    __m128i m_Largest; // the largest digit at each place, 0 at that of the point
    __m128i m_Below;   // all bits below the point
};

bool ReadShort(const FieldWords& words, size_t count, size_t decimals, float* numbers) {
    const CFixedPoint point(decimals);
    const __m128 divisor = _mm_set1_ps(kShortDivisors[decimals]);
    COddFields odd;
    for (size_t i = 0; i < count; i += 4) {
        const __m128i first = point.DigitsOf(words.low.data() + i, odd);
        const __m128i second = point.DigitsOf(words.low.data() + i + 2, odd);
        const __m128 magnitudes = _mm_cvtepi32_ps(NumbersOf(first, second));
        Store(numbers + i, _mm_div_ps(magnitudes, divisor), words.signs.data() + i);
    }
    return !odd.IsAny();
}

bool ReadLong(const FieldWords& words, size_t count, size_t decimals, float* numbers) {
    const CFixedPoint point(decimals);
    const __m128d divisor = _mm_set1_pd(field::kDivisors.data()[decimals]);
    COddFields odd;
    for (size_t i = 0; i < count; i += 4) {
        const __m128i before = Load(words.high.data() + i);
        const __m128i beforeNext = Load(words.high.data() + i + 2);
        odd.Look(before);
        odd.Look(beforeNext);
        const __m128i first =
            _mm_or_si128(point.DigitsOf(words.low.data() + i, odd), _mm_srli_epi64(before, 56));
        const __m128i second =
            _mm_or_si128(point.DigitsOf(words.low.data() + i + 2, odd), _mm_srli_epi64(beforeNext, 56));
        const __m128i low = NumbersOf(first, second);
        const __m128i high = NumbersOf(_mm_slli_epi64(before, 8), _mm_slli_epi64(beforeNext, 8));
        const __m128d one = _mm_div_pd(Joined(high, low), divisor);
        const __m128d other =
            _mm_div_pd(Joined(_mm_shuffle_epi32(high, 0xEE), _mm_shuffle_epi32(low, 0xEE)), divisor);
        Store(numbers + i, _mm_movelh_ps(_mm_cvtpd_ps(one), _mm_cvtpd_ps(other)), words.signs.data() + i);
    }
    return !odd.IsAny();
}

} // namespace

bool ReadNumbers(const FieldWords& words, size_t count, bool isLong, float* numbers) {
    return isLong ? ReadLong(words, count, numbers) : ReadShort(words, count, numbers);
}

bool ReadNumbers(const FieldWords& words, size_t count, bool isLong, size_t decimals, float* numbers) {
    return isLong ? ReadLong(words, count, decimals, numbers) : ReadShort(words, count, decimals, numbers);
}

bool ReadNumbers(const FieldWords& words, size_t count, int32_t* numbers) {
    COddFields odd;
    for (size_t i = 0; i < count; i += 4) {
        const __m128i first = Load(words.low.data() + i);
        const __m128i second = Load(words.low.data() + i + 2);
        odd.Look(first);
        odd.Look(second);
        const __m128i signs = _mm_load_si128(reinterpret_cast<const __m128i*>(words.signs.data() + i));
        const __m128i minus = _mm_srai_epi32(signs, 31);
        const __m128i values = _mm_sub_epi32(_mm_xor_si128(NumbersOf(first, second), minus), minus);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(numbers + i), values);
    }
    return !odd.IsAny();
}

} // namespace Tracelyn

#endif
