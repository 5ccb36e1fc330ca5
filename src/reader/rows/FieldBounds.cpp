#include "reader/rows/FieldBounds.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <array>

namespace Tracelyn {

#ifdef __SSE2__

namespace {

// What follows from eight flags for eight characters, the first one in the lowest bit: behind which of them
// something begins, and how many those are.
struct Begins {
    alignas(16) std::array<std::array<uint16_t, 8>, 256> behind{};
    std::array<uint8_t, 256> count{};
};

constexpr Begins kBegins = [] {
    Begins begins;
    for (size_t flags = 0; flags < 256; ++flags) {
        for (size_t at = 0; at < 8; ++at) {
            if ((flags >> at & 1) != 0)
                begins.behind[flags][begins.count[flags]++] = static_cast<uint16_t>(at + 1);
        }
    }
    return begins;
}();

// Stores where fields begin, eight at once; what is behind the last one will be overwritten.
uint16_t* StoreBegins(uint16_t* next, __m128i before, size_t flags) {
    const __m128i behind =
        _mm_load_si128(reinterpret_cast<const __m128i*>(kBegins.behind.data()[flags].data()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(next), _mm_add_epi16(before, behind));
    return next + kBegins.count.data()[flags];
}

} // namespace

uint16_t* CFieldBounds::FindEnds(size_t size, uint16_t* next) {
    const __m128i comma = _mm_set1_epi8(',');
    const __m128i lineFeed = _mm_set1_epi8('\n');
    const __m128i eight = _mm_set1_epi16(8);
    __m128i before = _mm_setzero_si128();
    __m128i rows = _mm_setzero_si128();
    for (size_t at = 0; at < size; at += kBlockBytes) {
        __m128i found = _mm_setzero_si128(); // -1 for each line feed, 16 characters side by side
        for (size_t i = 0; i < kBlockBytes; i += 16) {
            const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m_pText + at + i));
            const __m128i isRow = _mm_cmpeq_epi8(part, lineFeed);
            const __m128i isEnd = _mm_or_si128(isRow, _mm_cmpeq_epi8(part, comma));
            const auto flags = static_cast<size_t>(_mm_movemask_epi8(isEnd));
            next = StoreBegins(next, before, flags & 0xFF);
            before = _mm_add_epi16(before, eight);
            next = StoreBegins(next, before, flags >> 8);
            before = _mm_add_epi16(before, eight);
            found = _mm_sub_epi8(found, isRow);
        }
        rows = _mm_add_epi64(rows, _mm_sad_epu8(found, _mm_setzero_si128()));
    }
    m_nRows = static_cast<size_t>(_mm_cvtsi128_si64(_mm_add_epi64(rows, _mm_srli_si128(rows, 8))));
    return next;
}

#else

uint16_t* CFieldBounds::FindEnds(size_t size, uint16_t* next) {
    for (size_t at = 0; at < size; ++at) {
        const bool isRow = m_pText[at] == '\n';
        m_nRows += isRow ? 1 : 0;
        *next = static_cast<uint16_t>(at + 1);
        next += isRow || m_pText[at] == ',' ? 1 : 0;
    }
    return next;
}

#endif

size_t CFieldBounds::Find(std::string_view text) {
    text = text.substr(0, text.rfind('\n') + 1);
    m_pText = text.data();
    m_nRows = 0;
    m_Begins.front() = 0;
    const uint16_t* next = FindEnds(text.size(), m_Begins.data() + 1);
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
