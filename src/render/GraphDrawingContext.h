// What one frame is drawn with: the painter, the area to repaint, the colours, the font and the layout's
// metrics.
#pragma once

#include "model/GraphDataSet.h"
#include "render/Mapping.h"
#include "render/PixelPainter.h"

#include <QColor>
#include <QRect>

class QPainter;

namespace Tracelyn {

class CGraphData;

struct ColorScheme {
    QColor background;
    QColor consoleFrame;
    QColor consoleFill;
    QColor boxPen;
    QColor boxBrush;
    QColor cursor;
    QColor fixedCursor;
    QColor headerText;
    QColor underline;
    QColor separator;
    QColor consoleGroupName;

    static const ColorScheme& Dark();
    static const ColorScheme& Light();
};

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

// Measured anew for every frame.
struct ConsoleMetrics {
    int width = 0;
    int height = 0;
    int widestName = 0;
    int numberWidth = 0;
    int widestUnit = 0;
};

// Lives for one frame and borrows everything it names.
class CGraphDrawingContext {
public:
    // `invalid` bounds the pixels that this frame must bring up to date.
    CGraphDrawingContext(QPainter& painter, CSmallFont& font, const PixelRect& client,
                         const PixelRect& invalid, CGraphData& data, bool dark);

    CPixelPainter& Painter() { return m_Painter; }
    const PixelRect& GetClient() const { return m_Client; }
    const PixelRect& GetInvalid() const { return m_Invalid; }
    CGraphData& GetData() const { return m_Data; }
    const ColorScheme& Colors() const { return m_Colors; }

    ConsoleMetrics m_Console;

private:
    CGraphData& m_Data;
    PixelRect m_Client;
    PixelRect m_Invalid;
    const ColorScheme& m_Colors;
    CPixelPainter m_Painter;
};

QColor ToQColor(ColorRef color);

} // namespace Tracelyn
