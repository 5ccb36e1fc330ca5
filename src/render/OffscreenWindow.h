// A window without a screen: the graph draws into a picture.
#pragma once

#include "render/Graph.h"
#include "render/GraphWindow.h"

#include <QImage>
#include <QSize>

namespace Tracelyn {

class COffscreenWindow : public CGraphWindow {
public:
    // The picture's size in pixels, at a scale factor of the screen (1, 1.5, 2, ...).
    explicit COffscreenWindow(QSize size, double scale = 1.0);

    // Paints the whole frame.
    const QImage& Paint(CGraph& graph);

    const QImage& GetImage() const { return m_Image; }

    PixelRect GetClientRect() const override { return {0, 0, m_Size.width(), m_Size.height()}; }
    // The next Paint draws everything anyway, and a picture has no scroll bar.
    void Invalidate(const PixelRect& /*area*/, Contents /*contents*/) override {}
    void Invalidate() override {}
    void UpdateNow() override {}
    void SetScrollBar(const ScrollBarState& /*state*/) override {}

private:
    QSize m_Size;
    QImage m_Image;
};

} // namespace Tracelyn
