// Fills runs of pixels of several colours in one pass over the rows of a picture. Curves of noise that lie
// over each other are thousands of columns, each of other rows than its neighbours: filled one by one, they
// touch each row of the picture as many times as there are columns in it.
#pragma once

#include "render/ColumnStrip.h"
#include "render/Mapping.h"
#include "support/BackgroundTasks.h"

#include <QRect>
#include <QRegion>
#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class QPainter;

namespace Tracelyn {

// Runs of one colour. The next layer lies over them.
struct RunLayer {
    QRgb color; // opaque
    std::span<const PixelRect> runs;
};

// The pixels that a painter of pixels writes to, and where its coordinates are among them. Ends with whatever
// the painter does next.
struct PixelGrid {
    uint32_t* first;   // of the row 0
    ptrdiff_t perLine; // pixels from one row to the next
    QRegion clip;      // what may be written
    int scale;         // pixels of a coordinate in both directions
    QPoint origin;     // pixel of the coordinate 0, 0
    bool isLarge;      // too large for the processor's caches
};

// Nothing when the painter's pixels cannot be reached, their colours take another form, a coordinate is no
// whole number of them or the clip has many pieces.
std::optional<PixelGrid> PixelsOf(QPainter& painter);

class CColumnFill {
public:
    // Whether the runs are high and cover so much of what surrounds them that Fill is the faster way.
    static bool IsWorthIt(std::span<const RunLayer> layers);

    // Begins to fill the runs, over all that was begun before. They may overlap and come in any order. Other
    // cores fill while the caller goes on, which must leave these pixels alone until Finish.
    void Begin(const PixelGrid& grid, std::span<const RunLayer> layers);
    // Returns when all pixels are filled.
    void Finish();

private:
    void BeginOnePass(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers);
    void AddRuns(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers);
    void AddRun(const PixelRect& pixels, size_t layer);

    QRegion m_Begun; // since Finish
    // Of one pass.
    std::vector<CColumnStrip*> m_Strips;
    int m_nStripColumns = 0;
    int m_nStrip = 0; // of the last run
    std::vector<QRgb> m_Colors;
    // Of all passes since Finish come first.
    std::vector<std::unique_ptr<CColumnStrip>> m_AllStrips;
    size_t m_nBegun = 0;
    support::CBackgroundTasks m_Tasks; // last, since it may use the strips as long as it is there
};

} // namespace Tracelyn
