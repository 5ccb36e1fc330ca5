// What the graph needs of the window that shows it, and a window without a screen.
#pragma once

#include "render/Mapping.h"

#include <QImage>
#include <QRegion>
#include <QSize>

class QPaintDevice;

namespace Tracelyn {

class CGraph;

// What a repaint does with the contents of an expanded group, its header and its plot: draw them, or keep the
// pixels that the window has of them.
enum class Contents { Draw, Keep };

// The pixels that one frame brings up to date.
class CPaintArea {
public:
    CPaintArea() = default;
    // With all contents.
    explicit CPaintArea(const QRegion& region) : m_Contents(region) {}

    // Contents are drawn wherever one of the regions added asks for it.
    void Add(const QRegion& region, Contents contents) {
        (contents == Contents::Draw ? m_Contents : m_Others) += region;
    }

    bool IsEmpty() const { return m_Contents.isEmpty() && m_Others.isEmpty(); }
    QRegion GetRegion() const { return m_Contents + m_Others; }
    // The part of the region where contents are drawn, and the rest of it.
    const QRegion& GetContents() const { return m_Contents; }
    QRegion GetKept() const { return m_Others - m_Contents; }

private:
    QRegion m_Contents;
    QRegion m_Others;
};

// The range and the position of the horizontal scroll bar, in sample indices. The maximum includes the page.
struct ScrollBarState {
    int minimum = 0;
    int maximum = 0;
    int page = 0;
    int position = 0;
    bool operator==(const ScrollBarState&) const = default;
};

// Implemented by the child view on the screen and, below, by a picture for the tool and the tests.
class CGraphWindow {
public:
    virtual ~CGraphWindow() = default;

    virtual PixelRect GetClientRect() const = 0;
    // Marks an area, or the whole client area with its contents, for repainting.
    virtual void Invalidate(const PixelRect& area, Contents contents) = 0;
    virtual void Invalidate() = 0;
    // Repaints all that is marked in one frame before it returns.
    virtual void UpdateNow() = 0;
    // Disables the bar, without hiding it, when nothing can scroll.
    virtual void SetScrollBar(const ScrollBarState& state) = 0;

protected:
    CGraphWindow() = default;
    CGraphWindow(const CGraphWindow&) = default;
    CGraphWindow& operator=(const CGraphWindow&) = default;
};

// The graph draws into a picture.
class COffscreenWindow : public CGraphWindow {
public:
    // The picture's size in pixels, at a scale factor of the screen (1, 1.5, 2, ...).
    explicit COffscreenWindow(QSize size, double scale = 1.0);

    // Paints the whole frame.
    const QImage& Paint(CGraph& graph);
    // The same into something else, such as a file, of the window's size.
    void PaintInto(QPaintDevice& device, CGraph& graph);

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
