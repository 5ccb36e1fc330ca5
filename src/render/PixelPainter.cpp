#include "PixelPainter.h"

#include "LineRuns.h"

CPixelPainter::CPixelPainter(QPainter& painter, const QFont& font) : m_Painter(painter), m_Metrics(font) {
    m_Painter.setRenderHint(QPainter::Antialiasing, false);
    m_Painter.setFont(font);
}

void CPixelPainter::SetPen(const QColor& color) {
    Flush();
    m_Pen = color;
}

void CPixelPainter::SetClip(const QRegion& clip) {
    Flush();
    m_Painter.setClipRegion(clip);
    m_ClipBounds = PixelRect::From(clip.boundingRect());
}

void CPixelPainter::Line(int x1, int y1, int x2, int y2) {
    ForEachLineRun(x1, y1, x2, y2, m_ClipBounds,
                   [this](int x, int y, int width, int height) { AddRun(x, y, width, height); });
}

void CPixelPainter::AddRun(int x, int y, int width, int height) {
    if (m_nRuns == m_Runs.size())
        Flush();
    m_Runs[m_nRuns++] = QRect(x, y, width, height);
}

void CPixelPainter::Flush() {
    if (m_nRuns == 0)
        return;
    m_Painter.setPen(Qt::NoPen);
    m_Painter.setBrush(m_Pen);
    m_Painter.drawRects(m_Runs.data(), static_cast<int>(m_nRuns));
    m_nRuns = 0;
}

void CPixelPainter::Rectangle(const PixelRect& rect) {
    if (rect.left >= rect.right || rect.top >= rect.bottom)
        return;
    Fill(rect, m_Pen);
    if (m_Brush != m_Pen && rect.Width() > 2 && rect.Height() > 2)
        Fill({rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1}, m_Brush);
}

void CPixelPainter::Fill(const PixelRect& rect, const QColor& color) {
    Flush();
    m_Painter.fillRect(rect.ToQRect().intersected(m_ClipBounds.ToQRect()), color);
}

void CPixelPainter::Polygon(std::span<const QPoint> points) {
    Flush();
    m_Painter.setPen(m_Pen);
    m_Painter.setBrush(m_Brush);
    m_Painter.drawPolygon(points.data(), static_cast<int>(points.size()));
}

void CPixelPainter::Text(int x, int y, const QString& text) {
    Flush();
    if (m_TextBackground.isValid())
        Fill({x, y, x + TextWidth(text), y + kTextHeight}, m_TextBackground);
    m_Painter.setPen(m_Text);
    m_Painter.drawText(x, y + m_Metrics.ascent(), text);
}
