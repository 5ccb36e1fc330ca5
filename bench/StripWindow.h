// A window without a screen that paints marked areas as one on the screen does: one frame for all of them,
// cut at their edges. Benchmarks, fuzzers and tests look at it.
#pragma once

#include "render/Graph.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <utility>

namespace Tracelyn {

class StripWindow : public CGraphWindow {
public:
    // Nothing is painted yet.
    StripWindow(CGraph& graph, QSize size, double scale = 1.0)
        : m_Graph(graph), m_Size(size), m_Image(size * scale, QImage::Format_RGB32) {
        m_Image.setDevicePixelRatio(scale);
        Spoil();
    }

    PixelRect GetClientRect() const override { return {0, 0, m_Size.width(), m_Size.height()}; }
    void Invalidate(const PixelRect& area, Contents contents) override {
        m_Invalid.Add(area.ToQRect() & QRect(QPoint(), m_Size), contents);
    }
    void Invalidate() override { m_Invalid = CPaintArea(QRect(QPoint(), m_Size)); }
    void UpdateNow() override { PaintInvalid(); }
    void SetScrollBar(const ScrollBarState& /*state*/) override {}

    void PaintAll() { Paint(CPaintArea(QRect(QPoint(), m_Size))); }
    void PaintInvalid() { Paint(std::exchange(m_Invalid, {})); }
    // What is not painted again stays wrong.
    void Spoil() { m_Image.fill(Qt::magenta); }

    const QImage& GetImage() const { return m_Image; }
    const CPaintArea& GetInvalid() const { return m_Invalid; }

private:
    void Paint(const CPaintArea& area) {
        m_Invalid = {};
        if (area.IsEmpty())
            return;
        m_Image.detach();
        const double scale = m_Image.devicePixelRatio();
        m_Image.paintEngine()->setSystemClip(QTransform::fromScale(scale, scale).map(area.GetRegion()));
        QPainter painter(&m_Image);
        m_Graph.Draw(*this, painter, area);
    }

    CGraph& m_Graph;
    QSize m_Size;
    QImage m_Image;
    CPaintArea m_Invalid;
};

} // namespace Tracelyn
