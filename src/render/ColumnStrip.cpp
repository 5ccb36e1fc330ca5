#include "render/ColumnStrip.h"

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

} // namespace

void CColumnStrip::Fill(uint32_t* first, ptrdiff_t perLine, size_t columns, size_t height,
                        std::span<const QRgb> colors) {
    if (m_Runs.empty())
        return;
    std::ranges::copy(colors, m_Colors.begin() + 1);
    SortEnds(height);
    for (size_t y = 0; y < height; ++y) {
        PassRow(y);
        uint32_t* const row = first + static_cast<ptrdiff_t>(y) * perLine;
        const QRgb* const shown = m_Shown.data();
        if (m_nCovered == columns) {
            std::copy_n(shown, columns, row);
        } else if (m_nCovered > 0) {
            for (size_t x = 0; x < columns; ++x)
                row[x] = shown[x] != 0 ? shown[x] : row[x];
        }
    }
    PassRow(height);
}

// Counts the ends of each row, which says where those of a row end among all, and then puts them there from
// the last one backwards.
void CColumnStrip::SortEnds(size_t height) {
    m_Rows.assign(height + 2, 0);
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
        const bool changes = (end & 1U) != 0 ? runs++ == 0 : --runs == 0;
        if (!changes)
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
