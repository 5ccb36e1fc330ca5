// Draws the samples of one data set into the mapping that the plot has set.
#pragma once

namespace Tracelyn {

class CCanvas;
class CGraphDataSet;
class CPixelPainter;
struct PixelRect;

// Looks at one sample for each pixel column at most, over the whole width of the client area, and draws those
// that the invalid area needs. What is drawn does not depend on how much of it: a repainted strip joins its
// surroundings.
void DrawCurve(CCanvas& canvas, CPixelPainter& painter, const CGraphDataSet& set, const PixelRect& client,
               const PixelRect& invalid);

} // namespace Tracelyn
