// Where the bands of the groups go, and how large the console is. Computed anew for every frame.
#pragma once

#include "render/GraphDrawingContext.h"
#include "render/Mapping.h"

#include <functional>

namespace Tracelyn {

class CGraphData;

// Gives every group shown in the graph its top, height and margins within the client area. Bands that do not
// fit fall below the window.
void LayoutBands(const CGraphData& data, const PixelRect& client);

// Gives every group shown in the console its line count and measures the console with the given text width in
// pixels. Texts behind the first 50,000 characters do not widen it.
ConsoleMetrics MeasureConsole(const CGraphData& data, const std::function<int(const QString&)>& textWidth);

} // namespace Tracelyn
