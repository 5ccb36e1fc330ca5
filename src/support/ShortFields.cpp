#include "support/ShortFields.h"

#include "support/Assertion.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <bit>

namespace support {

namespace {

// Fields are made four at once.
constexpr size_t kAtOnce = 4;

} // namespace

CShortFields::CShortFields(size_t columns, size_t rows)
    : m_nRows((rows + kAtOnce - 1) / kAtOnce * kAtOnce),
      // Whole fields are copied from where their text begins, so the last one needs readable bytes behind it.
      m_Fields(std::make_unique<char[]>((columns * m_nRows + 1) * kShortFieldBytes)),
      m_Begins(std::make_unique<uint8_t[]>(columns * m_nRows)) {}

#ifdef __SSE2__

namespace {

constexpr int kMaxDecimals = 6;
constexpr std::array<double, kMaxDecimals + 1> kUnitsInOne{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
// A word has eight digits. Two have as many as leave room for sign, point and separator. Values just below
// the power of ten might be rounded up to it.
constexpr double kWord = 1e8;
constexpr double kOneWordLimit = 0.99 * kWord;
constexpr double kTwoWordsLimit = 0.99e13;
// A double of this size has no place for a fraction; its lowest bits are what was added to it, rounded to
// even.
constexpr double kNoFraction = 0x1p52;

enum class Words : uint8_t { One, Two, TooMany };

__m128 MagnitudesOf(__m128 values) {
    return _mm_andnot_ps(_mm_set1_ps(-0.0F), values);
}

// Calls take(four values) for all of them; zeros make the last ones four.
template <class Take>
void ForEachFour(std::span<const float> values, Take take) {
    for (; values.size() >= kAtOnce; values = values.subspan(kAtOnce))
        take(values.data());
    if (!values.empty()) {
        std::array<float, kAtOnce> last{};
        std::ranges::copy(values, last.begin());
        take(last.data());
    }
}

// How many words the longest number needs. TooMany for what is no number.
Words WordsFor(std::span<const float> values, int decimals) {
    const double unitsInOne = kUnitsInOne.data()[decimals];
    const __m128 one = _mm_set1_ps(static_cast<float>(kOneWordLimit / unitsInOne));
    const __m128 two = _mm_set1_ps(static_cast<float>(kTwoWordsLimit / unitsInOne));
    __m128 beyondOne = _mm_setzero_ps();
    __m128 beyondTwo = _mm_setzero_ps();
    ForEachFour(values, [&](const float* four) {
        const __m128 magnitudes = MagnitudesOf(_mm_loadu_ps(four));
        beyondOne = _mm_or_ps(beyondOne, _mm_cmpnlt_ps(magnitudes, one));
        beyondTwo = _mm_or_ps(beyondTwo, _mm_cmpnlt_ps(magnitudes, two));
    });
    if (_mm_movemask_ps(beyondOne) == 0)
        return Words::One;
    return _mm_movemask_ps(beyondTwo) == 0 ? Words::Two : Words::TooMany;
}

__m128i Twice(uint64_t value) {
    return _mm_set1_epi64x(static_cast<long long>(value));
}

// Eight digits of each of two numbers below 10^8; the first one is in the lowest byte. What is in the upper
// halves of the numbers does not count.
__m128i DigitsOf(__m128i numbers) {
    // Each step splits all parts in two. The factors give the exact quotients of such small numbers.
    const __m128i high = _mm_srli_epi64(_mm_mul_epu32(numbers, Twice(0xD1B71759)), 45);
    const __m128i low = _mm_sub_epi32(numbers, _mm_mul_epu32(high, Twice(10'000)));
    __m128i parts = _mm_or_si128(high, _mm_slli_epi64(low, 32));
    const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(parts, _mm_set1_epi16(5243)), 3);
    const __m128i rest = _mm_sub_epi16(parts, _mm_mullo_epi16(hundreds, _mm_set1_epi16(100)));
    parts = _mm_or_si128(hundreds, _mm_slli_epi32(rest, 16));
    const __m128i tens = _mm_mulhi_epu16(parts, _mm_set1_epi16(6554));
    const __m128i ones = _mm_sub_epi16(parts, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
    return _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
}

// Sixteen digits of each of two numbers.
struct Digits {
    __m128i first; // the first eight digits of both
    __m128i last;  // the last eight ones
};

Digits DigitsOf(__m128d units, Words words) {
    const __m128d rounded = _mm_add_pd(units, _mm_set1_pd(kNoFraction));
    if (words == Words::One)
        return {_mm_setzero_si128(), DigitsOf(_mm_castpd_si128(rounded))};
    // A half more keeps the inexact quotient well on the right side of whole numbers.
    const __m128d whole = _mm_sub_pd(rounded, _mm_set1_pd(kNoFraction));
    const __m128i high =
        _mm_cvttpd_epi32(_mm_mul_pd(_mm_add_pd(whole, _mm_set1_pd(0.5)), _mm_set1_pd(1 / kWord)));
    const __m128d low = _mm_sub_pd(rounded, _mm_mul_pd(_mm_cvtepi32_pd(high), _mm_set1_pd(kWord)));
    return {DigitsOf(_mm_unpacklo_epi32(high, _mm_setzero_si128())), DigitsOf(_mm_castpd_si128(low))};
}

// Makes the fields of one column.
class CColumn {
public:
    CColumn(int decimals, char separator)
        : m_UnitsInOne(_mm_set1_pd(kUnitsInOne.data()[decimals])), m_nAhead(decimals == 0 ? 1 : 2),
          m_LastZero(1U << (15 - decimals)), m_FirstShift(_mm_cvtsi32_si128(8 * m_nAhead)),
          m_LastShift(_mm_cvtsi32_si128(8 * (8 - m_nAhead))),
          m_Decimals(Twice(BytesFrom(7 - decimals) & ~BytesFrom(7))),
          m_Whole(Twice(~BytesFrom(8 - decimals - m_nAhead))),
          m_Constant(Twice(uint64_t{static_cast<uint8_t>(separator)} << 56 |
                           (decimals == 0 ? 0 : uint64_t{'.'} << 8 * (6 - decimals)))) {}

    // Four fields, and where each one begins.
    template <Words kWords>
    void Format(const float* values, char* fields, uint8_t* begins) const {
        const __m128 four = _mm_loadu_ps(values);
        const auto signs = static_cast<unsigned>(_mm_movemask_ps(four));
        const __m128 magnitudes = MagnitudesOf(four);
        FormatTwo<kWords>(_mm_cvtps_pd(magnitudes), signs, fields, begins);
        FormatTwo<kWords>(_mm_cvtps_pd(_mm_movehl_ps(magnitudes, magnitudes)), signs >> 2,
                          fields + 2 * kShortFieldBytes, begins + 2);
    }

private:
    static constexpr uint64_t BytesFrom(int first) { return first >= 8 ? 0 : ~uint64_t{0} << 8 * first; }

    template <Words kWords>
    void FormatTwo(__m128d magnitudes, unsigned signs, char* fields, uint8_t* begins) const {
        const Digits digits = DigitsOf(_mm_mul_pd(magnitudes, m_UnitsInOne), kWords);
        const __m128i none = _mm_setzero_si128();
        const auto first = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(digits.first, none)));
        const auto last = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(digits.last, none)));
        Store(digits, fields);
        Begin((first & 0xFF) | last << 8, signs & 1, fields, begins);
        Begin(first >> 8 | (last & 0xFF00), signs >> 1 & 1, fields + kShortFieldBytes, begins + 1);
    }

    // Stores two fields without signs and with all their leading zeros.
    void Store(Digits digits, char* fields) const {
        const __m128i zeros = _mm_set1_epi8('0');
        const __m128i last = _mm_or_si128(digits.last, zeros);
        const __m128i ahead = _mm_or_si128(_mm_srl_epi64(_mm_or_si128(digits.first, zeros), m_FirstShift),
                                           _mm_sll_epi64(last, m_LastShift));
        const __m128i whole = _mm_and_si128(_mm_srl_epi64(last, m_FirstShift), m_Whole);
        const __m128i decimals = _mm_and_si128(_mm_srli_epi64(last, 8), m_Decimals);
        const __m128i behind = _mm_or_si128(_mm_or_si128(whole, decimals), m_Constant);
        auto* const target = reinterpret_cast<__m128i*>(fields);
        _mm_storeu_si128(target, _mm_unpacklo_epi64(ahead, behind));
        _mm_storeu_si128(target + 1, _mm_unpackhi_epi64(ahead, behind));
    }

    // Bits of zeros: which of the sixteen digits are zeros, the first one lowest.
    void Begin(unsigned zeros, unsigned sign, char* field, uint8_t* begin) const {
        const auto leading = static_cast<unsigned>(std::countr_zero(~zeros | m_LastZero));
        const unsigned first = leading - static_cast<unsigned>(m_nAhead);
        field[first - 1] = '-';
        *begin = static_cast<uint8_t>(first - sign);
    }

    // A field's bytes are two words. The second one ends with the separator; the first one ends with those of
    // the last eight digits for which the second one has no room.
    __m128d m_UnitsInOne;
    int m_nAhead;        // so many of them
    unsigned m_LastZero; // the digit that is written even if all before it are zeros, too
    __m128i m_FirstShift;
    __m128i m_LastShift;
    __m128i m_Decimals; // bytes of the second word that are decimals
    __m128i m_Whole;    // those that are digits before the point
    __m128i m_Constant; // point and separator
};

template <Words kWords>
void FormatAll(const CColumn& column, std::span<const float> values, char* fields, uint8_t* begins) {
    ForEachFour(values, [&](const float* four) {
        column.Format<kWords>(four, fields, begins);
        fields += kAtOnce * kShortFieldBytes;
        begins += kAtOnce;
    });
}

} // namespace

bool CShortFields::Format(size_t column, std::span<const float> values, int precision, char separator) {
    Assert(values.size() <= m_nRows, "values.size() <= m_nRows");
    const int decimals = precision < 0 ? 6 : precision;
    if (decimals > kMaxDecimals)
        return false;
    const Words words = WordsFor(values, decimals);
    if (words == Words::TooMany)
        return false;
    char* const fields = m_Fields.get() + column * m_nRows * kShortFieldBytes;
    uint8_t* const begins = m_Begins.get() + column * m_nRows;
    const CColumn made(decimals, separator);
    if (words == Words::One)
        FormatAll<Words::One>(made, values, fields, begins);
    else
        FormatAll<Words::Two>(made, values, fields, begins);
    return true;
}

#else

bool CShortFields::Format(size_t, std::span<const float>, int, char) {
    return false;
}

#endif

} // namespace support
