#include "reader/rows/FieldBounds.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>

namespace Tracelyn {

namespace {

// Which of 64 characters are commas or line feeds, the first one in the lowest bit, and how many are, of them
// line feeds.
struct Ends {
    uint64_t bits;
    size_t count;
    size_t rows;
};

#ifdef __SSE2__

// The sum of 16 small numbers.
size_t SumOf(__m128i numbers) {
    const __m128i sums = _mm_sad_epu8(numbers, _mm_setzero_si128());
    return static_cast<size_t>(_mm_cvtsi128_si64(_mm_add_epi64(sums, _mm_srli_si128(sums, 8))));
}

Ends FindEnds(const char* text) {
    const __m128i comma = _mm_set1_epi8(',');
    const __m128i lineFeed = _mm_set1_epi8('\n');
    uint64_t bits = 0;
    // Of the characters at the same place in all parts. What is found is -1.
    __m128i counts = _mm_setzero_si128();
    __m128i rows = _mm_setzero_si128();
    for (int i = 0; i < 4; ++i) {
        const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text) + i);
        const __m128i isRow = _mm_cmpeq_epi8(part, lineFeed);
        const __m128i isEnd = _mm_or_si128(isRow, _mm_cmpeq_epi8(part, comma));
        bits |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(isEnd))) << (16 * i);
        counts = _mm_sub_epi8(counts, isEnd);
        rows = _mm_sub_epi8(rows, isRow);
    }
    return {bits, SumOf(counts), SumOf(rows)};
}

#else

Ends FindEnds(const char* text) {
    Ends ends{};
    for (int i = 0; i < 64; ++i) {
        const uint64_t isEnd = text[i] == ',' || text[i] == '\n' ? 1 : 0;
        ends.bits |= isEnd << i;
        ends.count += isEnd;
        ends.rows += text[i] == '\n' ? 1 : 0;
    }
    return ends;
}

#endif

} // namespace

size_t CFieldBounds::Find(std::string_view text) {
    text = text.substr(0, text.rfind('\n') + 1);
    m_pText = text.data();
    m_nRows = 0;
    uint16_t* next = m_Begins.data();
    *next++ = 0;
    for (size_t at = 0; at < text.size(); at += kBlockBytes) {
        auto [ends, count, rows] = FindEnds(m_pText + at);
        m_nRows += rows;
        // Always in steps of eight, so that the processor guesses right how often the loop goes round. Behind
        // the last one follow beginnings that nobody uses.
        for (size_t done = 0; done < count; done += 8) {
            for (size_t i = 0; i < 8; ++i) {
                const auto end = static_cast<size_t>(std::countr_zero(ends | uint64_t{1} << 63));
                next[done + i] = static_cast<uint16_t>(at + end + 1);
                ends &= ends - 1;
            }
        }
        next += count;
    }
    // The last block may have found ends behind the text.
    while (*--next > text.size())
        m_nRows -= m_pText[*next - 1] == '\n' ? 1 : 0;
    CompareRows(static_cast<size_t>(next - m_Begins.data()));
    return text.size();
}

void CFieldBounds::CompareRows(size_t fields) {
    m_nFieldsPerRow = 0;
    m_bReturns = false;
    if (m_nRows == 0 || fields % m_nRows != 0)
        return;
    const size_t count = fields / m_nRows;
    size_t returns = 0;
    for (size_t end = count; end <= fields; end += count) {
        const char* const next = m_pText + m_Begins[end];
        if (next[-1] != '\n')
            return;
        if (m_Begins[end] > 1 && next[-2] == '\r')
            ++returns;
    }
    m_nFieldsPerRow = count;
    m_bReturns = returns == m_nRows;
}

} // namespace Tracelyn
