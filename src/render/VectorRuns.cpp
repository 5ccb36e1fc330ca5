#include "render/VectorRuns.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

namespace Tracelyn {

namespace {

constexpr double kMiddle = 0.5;

void AddLine(QPainterPath& lines, const PixelRect& run) {
    if (run.GetHeight() == 1) {
        lines.moveTo(run.left, run.top + kMiddle);
        lines.lineTo(run.right, run.top + kMiddle);
    } else {
        lines.moveTo(run.left + kMiddle, run.top);
        lines.lineTo(run.left + kMiddle, run.bottom);
    }
}

} // namespace

bool IsVectorFile(const QPainter& painter) {
    const QPaintEngine::Type type = painter.paintEngine()->type();
    return type == QPaintEngine::SVG || type == QPaintEngine::Pdf;
}

void DrawAsLines(QPainter& painter, std::span<const PixelRect> runs, const QColor& color) {
    QPainterPath lines;
    QPainterPath areas;
    // Areas may overlap.
    areas.setFillRule(Qt::WindingFill);
    for (const PixelRect& run : runs) {
        if (run.GetWidth() == 1 || run.GetHeight() == 1)
            AddLine(lines, run);
        else
            areas.addRect(run.ToQRect());
    }
    if (!lines.isEmpty())
        painter.strokePath(lines, QPen(color, 1, Qt::SolidLine, Qt::FlatCap));
    if (!areas.isEmpty())
        painter.fillPath(areas, color);
}

} // namespace Tracelyn
