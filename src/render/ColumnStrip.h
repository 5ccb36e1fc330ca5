// Fills columns of pixels side by side, in one pass over their rows.
#pragma once

#include "render/Mapping.h"

#include <QRgb>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Tracelyn {

// Goes down the rows and knows what each column shows: from one row to the next only those columns change in
// which a run begins or ends. The memory of one filling serves the next.
class CColumnStrip {
public:
    // What is known of so many columns stays in the processor's own memory while all rows go through them.
    static constexpr int kMostColumns = 1024;
    // Each layer has a bit in a word.
    static constexpr int kMostLayers = 32;

    // Forgets the runs of the filling before.
    void Clear() { m_Runs.clear(); }
    // Columns and rows count from the first pixel to be filled; both sides must be below 32768.
    void Add(const PixelRect& run, size_t layer) {
        m_Runs.push_back({static_cast<uint16_t>(run.left), static_cast<uint16_t>(run.right),
                          static_cast<uint16_t>(run.top), static_cast<uint16_t>(run.bottom),
                          static_cast<uint16_t>(layer)});
    }
    // Fills the runs: `first` is the pixel of column and row 0, `perLine` the way from row to row, in pixels.
    // Later colours lie over earlier ones.
    void Fill(uint32_t* first, ptrdiff_t perLine, size_t columns, size_t height,
              std::span<const QRgb> colors);

private:
    struct Run {
        uint16_t left;
        uint16_t right;
        uint16_t top;
        uint16_t bottom;
        uint16_t layer;
    };
    // Where a run begins or ends in a column: the layer, the column and, in the lowest bit, whether it
    // begins.
    using End = uint16_t;

    void SortEnds(size_t height);
    void PassRow(size_t y);

    std::vector<Run> m_Runs;
    std::vector<uint32_t> m_Rows; // where the ends of each row are among all
    std::vector<End> m_Ends;      // by their rows
    std::array<QRgb, kMostLayers + 1> m_Colors{};
    // All zero between fillings.
    std::array<uint16_t, size_t{kMostColumns} * kMostLayers> m_Cover{}; // runs of each layer over each column
    std::array<uint32_t, kMostColumns> m_Layers{};                      // that cover each column, a bit each
    std::array<QRgb, kMostColumns> m_Shown{};                           // the colour of the highest of them
    size_t m_nCovered = 0;                                              // columns
};

} // namespace Tracelyn
