// Draws the samples of one data set into the mapping that the plot has set.
#pragma once

#include <span>
#include <vector>

class QRegion;

namespace Tracelyn {

class CCanvas;
class CGraphDataSet;
class CPixelPainter;
struct PixelRect;

// Pixel columns from `left` up to, but without, `right`.
struct ColumnRange {
    int left;
    int right;
};

// The columns in which the region has pixels, from left to right. Ranges that almost touch come as one.
std::vector<ColumnRange> ColumnsOf(const QRegion& region);

// Looks at one sample for each pixel column at most, over the whole width of the client area, and draws those
// that the given columns need. What is drawn there does not depend on how many columns are asked for: a
// repainted strip joins its surroundings.
void DrawCurve(CCanvas& canvas, CPixelPainter& painter, const CGraphDataSet& set, const PixelRect& client,
               std::span<const ColumnRange> columns);

} // namespace Tracelyn
