#include "render/VectorRuns.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

namespace Tracelyn {

namespace {

constexpr double kMiddle = 0.5;

void AddLine(QPainterPath& lines, const QRect& run) {
    if (run.height() == 1) {
        lines.moveTo(run.x(), run.y() + kMiddle);
        lines.lineTo(run.x() + run.width(), run.y() + kMiddle);
    } else {
        lines.moveTo(run.x() + kMiddle, run.y());
        lines.lineTo(run.x() + kMiddle, run.y() + run.height());
    }
}

} // namespace

bool IsVectorFile(const QPainter& painter) {
    const QPaintEngine::Type type = painter.paintEngine()->type();
    return type == QPaintEngine::SVG || type == QPaintEngine::Pdf;
}

void DrawAsLines(QPainter& painter, std::span<const QRect> runs, const QColor& color) {
    QPainterPath lines;
    QPainterPath areas;
    // Areas may overlap.
    areas.setFillRule(Qt::WindingFill);
    for (const QRect& run : runs) {
        if (run.width() == 1 || run.height() == 1)
            AddLine(lines, run);
        else
            areas.addRect(run);
    }
    if (!lines.isEmpty())
        painter.strokePath(lines, QPen(color, 1, Qt::SolidLine, Qt::FlatCap));
    if (!areas.isEmpty())
        painter.fillPath(areas, color);
}

} // namespace Tracelyn
