#include "render/GraphWindow.h"

#include "render/Graph.h"

#include <QPainter>

namespace Tracelyn {

COffscreenWindow::COffscreenWindow(QSize size, double scale)
    : m_Size(size), m_Image(size * scale, QImage::Format_RGB32) {
    m_Image.setDevicePixelRatio(scale);
    m_Image.fill(Qt::black);
}

const QImage& COffscreenWindow::Paint(CGraph& graph) {
    PaintInto(m_Image, graph);
    return m_Image;
}

void COffscreenWindow::PaintInto(QPaintDevice& device, CGraph& graph) {
    QPainter painter(&device);
    graph.Draw(*this, painter, CPaintArea(GetClientRect().ToQRect()));
}

} // namespace Tracelyn
