// Fills columns of pixels side by side, in one pass over their rows.
#pragma once

#include "render/PixelGrid.h"

#include <QPoint>
#include <QRgb>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Tracelyn {

// Pixels of columns side by side, at most 32767 rows high.
struct StripPixels {
    uint32_t* first;
    ptrdiff_t perLine; // pixels from one row to the next
    size_t columns;
    size_t rows;
    bool isLarge; // the picture is too large for the processor's caches
};

// Goes down the rows and knows what each column shows: from one row to the next only those columns change in
// which a run begins or ends. The memory of one filling serves the next.
class CColumnStrip {
public:
    // What is known of so many columns stays in the processor's own memory while all rows go through them.
    static constexpr int kMostColumns = 1024;
    // Each layer has a bit in a word.
    static constexpr int kMostLayers = 32;

    // What is to be filled. Forgets the layers of the filling before.
    void Begin(const StripPixels& pixels);
    // Adds those of the layer's runs that reach into the strip, at most 65,535 over one column. At most
    // kMostLayers layers; later ones lie over earlier ones. A coordinate is `scale` pixels; `origin` is the
    // pixel of the coordinate 0, 0, counted from the strip's first.
    void Add(const RunLayer& layer, int scale, const QPoint& origin);
    // Fills the layers. Throws before it has written anything when there is no memory.
    void Fill();

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

    void SortEnds();
    void PassRow(size_t y);

    StripPixels m_Pixels{};
    std::vector<Run> m_Runs;
    size_t m_nLayers = 0;
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
