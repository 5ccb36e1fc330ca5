// Writes to the pixels of a painter without asking it.
#pragma once

#include "render/Mapping.h"

#include <QPoint>
#include <QRegion>
#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

class QPainter;

namespace Tracelyn {

// Runs of one colour. The next layer lies over them.
struct RunLayer {
    QRgb color; // opaque
    std::span<const PixelRect> runs;
};

// The pixels that a painter of pixels writes to, and where its coordinates are among them. The pixels stay
// there until the painter ends or its picture is copied; the clip and the coordinates are those of the
// moment.
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

// Fills the runs one after the other. The painter does the same, but slowly where its clip is no rectangle.
void FillRuns(const PixelGrid& grid, const RunLayer& layer);

} // namespace Tracelyn
