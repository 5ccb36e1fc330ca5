#include "render/ColumnStrip.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <numeric>

namespace Tracelyn {

namespace {

constexpr unsigned kColumnBits = std::bit_width(unsigned{CColumnStrip::kMostColumns - 1});

// The number of a column of a layer.
constexpr size_t CellOf(size_t layer, size_t column) {
    return layer << kColumnBits | column;
}

// A copy reads the pixels into the processor's caches first, and others have to leave. When the picture is
// larger than the caches, these have left again before anybody reads them, so this writes to memory at once.
void CopyPastCaches(const QRgb* from, size_t count, uint32_t* to) {
#ifdef __SSE2__
    constexpr size_t kTogether = 4;
    for (; count > 0 && reinterpret_cast<uintptr_t>(to) % sizeof(__m128i) != 0; --count)
        *to++ = *from++;
    for (; count >= kTogether; count -= kTogether, from += kTogether, to += kTogether)
        _mm_stream_si128(reinterpret_cast<__m128i*>(to),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
#endif
    std::copy_n(from, count, to);
}

// Whoever is told that the pixels are there sees them.
void EndCopiesPastCaches() {
#ifdef __SSE2__
    _mm_sfence();
#endif
}

} // namespace

void CColumnStrip::Begin(const StripPixels& pixels) {
    m_Pixels = pixels;
    m_Runs.clear();
    m_nLayers = 0;
}

void CColumnStrip::Add(const RunLayer& layer, int scale, const QPoint& origin) {
    const auto columns = static_cast<int>(m_Pixels.columns);
    const auto rows = static_cast<int>(m_Pixels.rows);
    const int first = -origin.x() / scale - 1; // coordinates that are surely outside
    const int end = (columns - origin.x()) / scale + 1;
    for (const PixelRect& run : layer.runs) {
        if (run.right <= first || run.left >= end)
            continue; // most are in other strips
        const int left = std::max(run.left * scale + origin.x(), 0);
        const int right = std::min(run.right * scale + origin.x(), columns);
        const int top = std::max(run.top * scale + origin.y(), 0);
        const int bottom = std::min(run.bottom * scale + origin.y(), rows);
        if (left < right && top < bottom)
            m_Runs.push_back({static_cast<uint16_t>(left), static_cast<uint16_t>(right),
                              static_cast<uint16_t>(top), static_cast<uint16_t>(bottom),
                              static_cast<uint16_t>(m_nLayers)});
    }
    m_Colors[++m_nLayers] = layer.color;
}

void CColumnStrip::Fill() {
    if (m_Runs.empty())
        return;
    SortEnds();
    const size_t columns = m_Pixels.columns;
    const QRgb* const shown = m_Shown.data();
    uint32_t* row = m_Pixels.first;
    for (size_t y = 0; y < m_Pixels.rows; ++y, row += m_Pixels.perLine) {
        PassRow(y);
        if (m_nCovered < columns) {
            for (size_t x = 0; m_nCovered > 0 && x < columns; ++x)
                row[x] = shown[x] != 0 ? shown[x] : row[x];
        } else if (m_Pixels.isLarge) {
            CopyPastCaches(shown, columns, row);
        } else {
            std::copy_n(shown, columns, row);
        }
    }
    EndCopiesPastCaches();
    PassRow(m_Pixels.rows);
}

// Counts the ends of each row, which says where those of a row end among all, and then puts them there from
// the last one backwards.
void CColumnStrip::SortEnds() {
    m_Rows.assign(m_Pixels.rows + 2, 0);
    for (const Run& run : m_Runs) {
        const auto columns = static_cast<uint32_t>(run.right - run.left);
        m_Rows[run.top] += columns;
        m_Rows[run.bottom] += columns;
    }
    std::partial_sum(m_Rows.begin(), m_Rows.end(), m_Rows.begin());
    m_Ends.resize(m_Rows.back());
    uint32_t* const rows = m_Rows.data();
    End* const ends = m_Ends.data();
    for (const Run& run : m_Runs) {
        for (size_t column = run.left; column < run.right; ++column) {
            const auto end = static_cast<End>(CellOf(run.layer, column) << 1U);
            ends[--rows[run.top]] = end | End{1};
            ends[--rows[run.bottom]] = end;
        }
    }
}

void CColumnStrip::PassRow(size_t y) {
    for (const End end : std::span(m_Ends).subspan(m_Rows[y], m_Rows[y + 1] - m_Rows[y])) {
        const size_t cell = end >> 1U;
        uint16_t& runs = m_Cover.data()[cell];
        // No branch on whether it begins or ends: nothing can guess it for noise.
        const uint16_t before = runs;
        runs = static_cast<uint16_t>(before + 2 * (end & 1U) - 1);
        if (std::min(before, runs) != 0)
            continue;
        const size_t column = cell % kMostColumns;
        uint32_t& layers = m_Layers.data()[column];
        const bool wasCovered = layers != 0;
        layers ^= uint32_t{1} << (cell >> kColumnBits);
        m_Shown.data()[column] = m_Colors.data()[static_cast<size_t>(std::bit_width(layers))];
        m_nCovered += size_t{layers != 0} - size_t{wasCovered};
    }
}

} // namespace Tracelyn
