#include "render/GraphDrawingContext.h"

namespace Tracelyn {

const ColorScheme& ColorScheme::Dark() {
    static const ColorScheme scheme{
        .background = QColor(0, 0, 0),
        .consoleFrame = QColor(0, 64, 128),
        .consoleFill = QColor(0, 0, 64),
        .boxPen = QColor(0, 128, 0),
        .boxBrush = QColor(0, 64, 0),
        .cursor = QColor(128, 128, 255),
        .fixedCursor = QColor(64, 64, 128),
        .headerText = QColor(0, 128, 0),
        .underline = QColor(0, 128, 0),
        .separator = QColor(0, 64, 0),
        .consoleGroupName = QColor(128, 128, 255),
    };
    return scheme;
}

const ColorScheme& ColorScheme::Light() {
    static const ColorScheme scheme{
        .background = QColor(240, 240, 250),
        .consoleFrame = QColor(210, 210, 225),
        .consoleFill = QColor(255, 255, 255),
        .boxPen = QColor(0, 0, 0),
        .boxBrush = QColor(255, 255, 255),
        .cursor = QColor(128, 128, 255),
        .fixedCursor = QColor(200, 200, 255),
        .headerText = QColor(0, 0, 128),
        .underline = QColor(128, 128, 255),
        .separator = QColor(205, 205, 255),
        .consoleGroupName = QColor(128, 128, 255),
    };
    return scheme;
}

CGraphDrawingContext::CGraphDrawingContext(QPainter& painter, PainterMemory& memory, const PixelRect& client,
                                           const CPaintArea& area, const CGraphData& data,
                                           const PlotOptions& options, bool dark)
    : m_Data(data), m_Client(client), m_Area(area), m_Options(options),
      m_Colors(dark ? ColorScheme::Dark() : ColorScheme::Light()), m_Memory(memory),
      m_Painter(painter, memory, area.GetRegion()) {
    m_Painter.SetClip(client.ToQRect());
}

QColor CGraphDrawingContext::Dimmed(const QColor& color) const {
    const QColor& ground = m_Colors.background;
    // Two fifths of the colour can be told from both the background and the curve.
    const auto mixed = [](int own, int other) { return (2 * own + 3 * other) / 5; };
    return QColor(mixed(color.red(), ground.red()), mixed(color.green(), ground.green()),
                  mixed(color.blue(), ground.blue()));
}

QColor ToQColor(ColorRef color) {
    return QColor(static_cast<int>(color & 0xFFU), static_cast<int>(color >> 8U & 0xFFU),
                  static_cast<int>(color >> 16U & 0xFFU));
}

} // namespace Tracelyn
