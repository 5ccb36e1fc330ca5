// Where the bands of the groups go, and how large the console is. Computed anew for every frame.
#pragma once

#include "render/Mapping.h"

#include <functional>

class QString;

namespace Tracelyn {

class CGraphData;

// In pixels, but for the counts.
struct LayoutMetrics {
    static constexpr int kHeaderHeight = 14;
    static constexpr int kPlotBottomMargin = 3;
    static constexpr int kSeparatorLines = 3;
    static constexpr int kMinimumPlotHeight = 9;
    static constexpr int kBinaryRowHeight = 3;
    static constexpr int kPlotInnerMargin = 2;
    static constexpr int kConsoleMargin = 4;
    static constexpr int kConsoleGroupGap = 4;
    static constexpr int kConsoleIndent = 2;
    static constexpr int kConsoleLineHeight = 12;
    static constexpr int kBinariesPerRow = 2;
};

// In pixels.
struct ConsoleMetrics {
    int width = 0;
    int height = 0;
    int widestName = 0;
    int numberWidth = 0;
    int widestUnit = 0;
};

// Writes top, height and margins of every group shown in the graph, all within the client area. Bands that do
// not fit fall below the window.
void LayoutBands(CGraphData& data, const PixelRect& client);

// Writes the line count of every group shown in the console, and measures the console with the given text
// width in pixels. Texts behind the first 50,000 characters do not widen it.
ConsoleMetrics MeasureConsole(CGraphData& data, const std::function<int(const QString&)>& textWidth);

} // namespace Tracelyn
