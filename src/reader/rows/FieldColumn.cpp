#include "reader/rows/FieldColumn.h"

#include "reader/rows/FieldNumber.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <type_traits>

namespace Tracelyn {

namespace {

struct Field {
    const char* begin;
    const char* end;
};

Field FieldIn(const ColumnFields& fields, size_t row) {
    const uint16_t* const begins = fields.begins + row * fields.fieldsPerRow;
    return {fields.text + begins[0], fields.text + begins[1] - fields.endBytes};
}

#ifdef __SSE2__

using field::kWordBytes;
using field::Word;

constexpr size_t kAtOnce = CFieldReader<float>::kAtOnce;

// Some fields of a column as words of the values of their characters; the last character is the highest byte.
// A minus sign is not among them.
struct Words {
    alignas(16) std::array<Word, kAtOnce> low;       // the last eight characters
    alignas(16) std::array<Word, kAtOnce> high;      // those before
    alignas(16) std::array<uint32_t, kAtOnce> signs; // the highest bit is set behind a minus sign
};

// Returns a length that no field exceeds, too much for any number when one is empty. Unless withHigh, `high`
// is not written, and the words of fields of more than eight characters have no meaning; with it, those of
// more than 16. Unless withSigns, a minus sign is a character like others.
template <bool withHigh, bool withSigns>
size_t LoadWords(const ColumnFields fields, size_t from, size_t count, Words& words) {
    size_t longest = 0; // less one, so that no length is the largest
    const uint16_t* begins = fields.begins + from * fields.fieldsPerRow;
    Word* const low = words.low.data();
    Word* const high = words.high.data();
    uint32_t* const signs = words.signs.data();
    if constexpr (!withSigns)
        words.signs.fill(0);
    for (size_t i = 0; i < count; ++i) {
        const size_t begin = begins[0];
        const char* number = fields.text + begin;
        size_t length = begins[1] - begin - fields.endBytes;
        begins += fields.fieldsPerRow;
        if constexpr (withSigns) {
            const uint32_t negative = *number == '-' ? 1 : 0;
            signs[i] = negative << 31;
            number += negative;
            length -= negative;
        }
        if constexpr (withHigh) {
            longest = std::max(longest, length - 1);
            const bool isLong = length > kWordBytes;
            const Word before = field::LoadValues(number, length - kWordBytes);
            const char* const last = isLong ? number + (length - kWordBytes) : number;
            low[i] = field::LoadValues(last, std::min(length, kWordBytes));
            high[i] = isLong ? before : 0;
        } else {
            longest |= length - 1; // at most seven when none exceeds eight characters
            low[i] = field::LoadValues(number, length);
        }
    }
    for (size_t i = count; i % 4 != 0; ++i) {
        low[i] = 0;
        high[i] = 0;
        signs[i] = 0;
    }
    return std::max(longest, longest + 1);
}

// The same for fields that are expected to be long or not, and that may have `most` characters.
template <bool withSigns>
size_t LoadExpecting(bool isLong, size_t most, const ColumnFields& fields, size_t from, size_t count,
                     Words& words) {
    size_t longest = 0;
    if (!isLong)
        longest = LoadWords<false, withSigns>(fields, from, count, words);
    if (isLong || (longest > kWordBytes && most > kWordBytes))
        longest = LoadWords<true, withSigns>(fields, from, count, words);
    return longest;
}

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
    void Look(__m128i digits) { m_Found = _mm_or_si128(m_Found, _mm_subs_epu8(digits, _mm_set1_epi8(9))); }
    // A point behind all digits may be all that the field has.
    void Look(const Points& points) { m_Found = _mm_or_si128(m_Found, _mm_srli_epi64(points.at, 56)); }
    bool IsAny() const { return _mm_movemask_epi8(_mm_cmpeq_epi8(m_Found, _mm_setzero_si128())) != 0xFFFF; }

private:
    __m128i m_Found = _mm_setzero_si128();
};

// The functions below convert `count` fields, rounded up to a multiple of four. They return false, and the
// numbers have no meaning, when any field is no plain decimal.

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
bool ReadShort(const Words& words, size_t count, float* numbers) {
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

[[gnu::always_inline]] inline LongDigits DigitsOf(const Words& words, size_t i, COddFields& odd) {
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
bool ReadLong(const Words& words, size_t count, float* numbers) {
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

bool ReadShort(const Words& words, size_t count, int32_t* numbers) {
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

#endif

} // namespace

// False when any field is no plain decimal of a usual length; the numbers have no meaning then.
template <class T>
bool CFieldReader<T>::ReadAtOnce([[maybe_unused]] size_t from, [[maybe_unused]] std::span<T> numbers) {
#ifdef __SSE2__
    constexpr size_t kLongest = std::is_floating_point_v<T> ? 15 : kWordBytes;
    const size_t count = numbers.size();
    Words words;
    const auto load = m_Habit.isSigned ? LoadExpecting<true> : LoadExpecting<false>;
    const size_t longest = load(m_Habit.isLong, kLongest, m_Fields, from, count, words);
    if (longest > kLongest)
        return false;
    m_Habit.isLong = longest > kWordBytes;
    std::array<T, kAtOnce> room;
    T* const read = count % 4 == 0 ? numbers.data() : room.data();
    bool isRead = false;
    if constexpr (std::is_floating_point_v<T>)
        isRead = m_Habit.isLong ? ReadLong(words, count, read) : ReadShort(words, count, read);
    else
        isRead = ReadShort(words, count, read);
    if (read == room.data())
        std::copy_n(read, count, numbers.data());
    return isRead;
#else
    return false;
#endif
}

template <class T>
void CFieldReader<T>::Read(size_t from, std::span<T> numbers) {
    if (ReadAtOnce(from, numbers))
        return;
    if (!m_Habit.isSigned) {
        m_Habit.isSigned = true;
        if (ReadAtOnce(from, numbers))
            return;
    }
    for (T& number : numbers) {
        const Field field = FieldIn(m_Fields, from++);
        if constexpr (std::is_floating_point_v<T>)
            number = FloatOfField(field.begin, field.end);
        else
            number = IntegerOfField(field.begin, field.end);
    }
}

template class CFieldReader<float>;
template class CFieldReader<int32_t>;

} // namespace Tracelyn
