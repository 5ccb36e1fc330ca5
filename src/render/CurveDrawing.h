// Draws the samples of one data set, one for each pixel column, into the mapping that the plot has set.
#pragma once

#include <QColor>

#include <cstdint>
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
    bool operator==(const ColumnRange&) const = default;
};

// The columns in which the region has pixels, from left to right. Ranges that almost touch come as one.
std::vector<ColumnRange> ColumnsOf(const QRegion& region);

// A data set as a plot shows it.
struct ShownSet {
    const CGraphDataSet& set;
    QColor color;
    // Sample i of the set stands at sample i + shift of the axis.
    int shift = 0;
    // Whether nothing is drawn before and behind the samples of the set. Otherwise its last sample goes on to
    // the right edge.
    bool endsWithItsData = false;
};

// Looks at one sample for each pixel column at most, over the whole width of the client area, and draws those
// that the given columns need. What is drawn there does not depend on how many columns are asked for: a
// repainted strip joins its surroundings.
void DrawCurve(CCanvas& canvas, CPixelPainter& painter, const ShownSet& shown, const PixelRect& client,
               std::span<const ColumnRange> columns);

} // namespace Tracelyn
