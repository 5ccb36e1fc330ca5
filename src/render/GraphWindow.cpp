#include "render/GraphWindow.h"

#include "render/Graph.h"

#include <QPainter>

namespace Tracelyn {

void PaintArea::Add(const QRegion& region, Contents contents) {
    m_Region += region;
    if (contents == Contents::Draw)
        m_Contents += region;
}

COffscreenWindow::COffscreenWindow(QSize size, double scale)
    : m_Size(size), m_Image(size * scale, QImage::Format_RGB32) {
    m_Image.setDevicePixelRatio(scale);
    m_Image.fill(Qt::black);
}

const QImage& COffscreenWindow::Paint(CGraph& graph) {
    QPainter painter(&m_Image);
    graph.Draw(*this, painter, PaintArea(GetClientRect().ToQRect()));
    return m_Image;
}

} // namespace Tracelyn
