// Writes runs of pixels as lines into a file of lines and texts, such as SVG or PDF.
#pragma once

#include "render/Mapping.h"

#include <span>

class QColor;
class QPainter;

namespace Tracelyn {

// Whether the painter writes such a file. It need not be able to clip: what lies on top has to come last.
bool IsVectorFile(const QPainter& painter);

// Draws the runs in one colour, with one path for all lines and one for all areas. A run of one row or column
// is a line through the middle of its pixels.
void DrawAsLines(QPainter& painter, std::span<const PixelRect> runs, const QColor& color);

} // namespace Tracelyn
