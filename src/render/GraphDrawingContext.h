// What one frame is drawn with: the painter, the area to repaint and the colours.
#pragma once

#include "model/GraphDataSet.h"
#include "render/GraphWindow.h"
#include "render/Mapping.h"
#include "render/PixelPainter.h"
#include "render/PlotOptions.h"

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

// Lives for one frame and borrows the painter, the memory, the model and the options.
class CGraphDrawingContext {
public:
    CGraphDrawingContext(QPainter& painter, PainterMemory& memory, const PixelRect& client,
                         const CPaintArea& area, const CGraphData& data, const PlotOptions& options,
                         bool dark);

    CPixelPainter& GetPainter() { return m_Painter; }
    const CPixelPainter& GetPainter() const { return m_Painter; }
    PainterMemory& GetMemory() { return m_Memory; }
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
    PainterMemory& m_Memory;
    CPixelPainter m_Painter;
};

QColor ToQColor(ColorRef color);

} // namespace Tracelyn
