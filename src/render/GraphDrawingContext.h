// What one frame is drawn with: the painter, the area to repaint, the colours and the font.
#pragma once

#include "model/GraphDataSet.h"
#include "render/GraphWindow.h"
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

// Lives for one frame and borrows the painter, the font and the model.
class CGraphDrawingContext {
public:
    CGraphDrawingContext(QPainter& painter, CSmallFont& font, const PixelRect& client, const CPaintArea& area,
                         const CGraphData& data, bool dark);

    CPixelPainter& GetPainter() { return m_Painter; }
    const PixelRect& GetClient() const { return m_Client; }
    const CPaintArea& GetArea() const { return m_Area; }
    const CGraphData& GetData() const { return m_Data; }
    const ColorScheme& GetColors() const { return m_Colors; }

private:
    const CGraphData& m_Data;
    PixelRect m_Client;
    CPaintArea m_Area;
    const ColorScheme& m_Colors;
    CPixelPainter m_Painter;
};

QColor ToQColor(ColorRef color);

} // namespace Tracelyn
