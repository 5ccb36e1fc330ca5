// What one frame is drawn with: the painter, the area to repaint and the colours.
#pragma once

#include "model/GraphDataSet.h"
#include "render/GraphWindow.h"
#include "render/Mapping.h"
#include "render/PixelPainter.h"

#include <QColor>
#include <QRect>

#include <unordered_map>

class QPainter;

namespace Tracelyn {

class CGraphData;

// What the picture shows on request beside one sample for each pixel column of the recording, or leaves out.
struct PlotOptions {
    bool everyEvent = false;
    bool console = true;
    // A second recording, drawn dimmed behind the first: the signals of that one and those that stand for
    // them in the second. Sample i of the second stands at sample i + shift of the first.
    std::unordered_map<const CGraphDataSet*, const CGraphDataSet*> behind;
    int shift = 0;
};

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

// Lives for one frame and borrows the painter, the memory, the model and the options.
class CGraphDrawingContext {
public:
    CGraphDrawingContext(QPainter& painter, PainterMemory& memory, const PixelRect& client,
                         const CPaintArea& area, const CGraphData& data, const PlotOptions& options,
                         bool dark);

    CPixelPainter& GetPainter() { return m_Painter; }
    const CPixelPainter& GetPainter() const { return m_Painter; }
    const PixelRect& GetClient() const { return m_Client; }
    const CPaintArea& GetArea() const { return m_Area; }
    const CGraphData& GetData() const { return m_Data; }
    const PlotOptions& GetOptions() const { return m_Options; }
    const ColorScheme& GetColors() const { return m_Colors; }
    // The colour of a curve behind others.
    QColor Dimmed(const QColor& color) const;

private:
    const CGraphData& m_Data;
    PixelRect m_Client;
    CPaintArea m_Area;
    const PlotOptions& m_Options;
    const ColorScheme& m_Colors;
    CPixelPainter m_Painter;
};

QColor ToQColor(ColorRef color);

} // namespace Tracelyn
