// What outlasts a frame.
#pragma once

#include "render/ColumnFill.h"
#include "render/ColumnSums.h"
#include "render/Mapping.h"
#include "render/RunFill.h"
#include "render/SmallFont.h"
#include "support/BackgroundTasks.h"

#include <QRgb>

#include <cstddef>
#include <vector>

namespace Tracelyn {

// Runs of one colour, from `begin` on among all.
struct ColoredRuns {
    QRgb color;
    size_t begin;
};

// What the painters of one picture hand on from frame to frame: the font, with the widths that it has
// measured, and memory, which takes long to get from the system. It can be made only while the application
// object exists.
struct PainterMemory {
    CSmallFont font;
    std::vector<PixelRect> runs;
    std::vector<ColoredRuns> layers;
    CRunFill runFill;
    CColumnFill columnFill;
    CFrameSums frameSums;
    support::CBackgroundTasks tasks; // last, since they use the others
};

} // namespace Tracelyn
