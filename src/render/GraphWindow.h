// What the graph needs of the window that shows it.
#pragma once

#include "render/Mapping.h"

namespace Tracelyn {

// The range and the position of the horizontal scroll bar, in sample indices. The maximum includes the page.
struct ScrollBarState {
    int minimum = 0;
    int maximum = 0;
    int page = 0;
    int position = 0;
    bool operator==(const ScrollBarState&) const = default;
};

// Implemented by the child view on the screen and by an off-screen picture for the tool and the tests.
class CGraphWindow {
public:
    virtual ~CGraphWindow() = default;

    virtual PixelRect GetClientRect() const = 0;
    // Marks an area, or the whole client area, for repainting.
    virtual void Invalidate(const PixelRect& area) = 0;
    virtual void Invalidate() = 0;
    // Repaints what is marked before it returns.
    virtual void UpdateNow() = 0;
    // Disables the bar, without hiding it, when nothing can scroll.
    virtual void SetScrollBar(const ScrollBarState& state) = 0;

protected:
    CGraphWindow() = default;
    CGraphWindow(const CGraphWindow&) = default;
    CGraphWindow& operator=(const CGraphWindow&) = default;
};

} // namespace Tracelyn
