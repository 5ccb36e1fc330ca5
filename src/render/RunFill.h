// Fills the runs of pixels that lines consist of through the painter, whose pixels cannot always be reached:
// not between whole scale factors of the screen, for example. A dense curve is thousands of columns one pixel
// wide; filled one by one, each touches as many rows of the picture as it is high.
#pragma once

#include "render/Mapping.h"

#include <QRect>

#include <cstddef>
#include <span>
#include <vector>

class QPainter;

namespace Tracelyn {

// The most runs that one call fills.
inline constexpr size_t kRunsAtOnce = 512;

class CRunFill {
public:
    // Takes all the memory that Fill will need.
    CRunFill();

    // Fills at most kRunsAtOnce rectangles with the painter's brush, and sets the painter's pen to none. They
    // may overlap and come in any order. High columns that stand side by side are filled row by row instead,
    // which is faster.
    void Fill(QPainter& painter, std::span<const PixelRect> runs);

private:
    void AddPieces(std::span<const PixelRect> columns);
    void AddRows(std::span<const PixelRect> columns, int top, int bottom);
    void FillStrip(QPainter& painter, int top);

    std::vector<QRect> m_Pieces;
    std::vector<QRect> m_Strip;
};

} // namespace Tracelyn
