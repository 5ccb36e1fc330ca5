// Cursor, zoom and scrolling of the graph.
#include "render/Console.h"
#include "render/FileJustOpened.h"
#include "render/Graph.h"

#include <algorithm>

namespace Tracelyn {

void CGraph::SetCursorPosition(CGraphWindow& window, int index) {
    index = std::max(std::min(index, m_nLastIndex), 0);
    if (index == m_nCursor)
        return;
    const int oldX = GetColumn(m_nCursor);
    const int newX = GetColumn(index);
    m_nCursor = index;

    const PixelRect client = window.GetClientRect();
    const int third = client.GetWidth() / 3;
    const bool isNearConsole = m_bConsoleOnLeft ? newX < client.left + third : newX > client.right - third;
    if (isNearConsole) {
        ToggleConsoleSide(window);
        return;
    }
    InvalidateStrip(window, oldX);
    InvalidateStrip(window, newX);
    // A cell may reach out of the console over a plot, whose pixels the frame before has left right. After a
    // file was opened a dialog has covered the window; the first step trusts nothing and draws the plot, too.
    InvalidateValues(window, TakeFileJustOpened() ? Contents::Draw : Contents::Keep);
    window.UpdateNow();
}

void CGraph::OnClick(CGraphWindow& window, unsigned buttons, int x, int y) {
    if (buttons == kLeftButton && m_Canvas.HitTest(x, y) == nullptr)
        SetCursorPosition(window, m_Canvas.GetTimeAxis().PixelToIndex(x));
}

void CGraph::SetFixedCursor(CGraphWindow& window, int index) {
    index = std::max(std::min(index, m_nLastIndex), kNoReference);
    if (m_nFixedCursor != kNoReference)
        InvalidateStrip(window, GetColumn(m_nFixedCursor));
    m_nFixedCursor = index;
    if (m_nFixedCursor != kNoReference)
        InvalidateStrip(window, GetColumn(m_nFixedCursor));
    InvalidateValues(window, Contents::Draw);
}

int CGraph::GetColumn(int index) const {
    return m_Canvas.GetTimeAxis().WorldToPixelX(static_cast<float>(index));
}

void CGraph::InvalidateStrip(CGraphWindow& window, int pixelX) const {
    const PixelRect client = window.GetClientRect();
    window.Invalidate({pixelX, client.top, pixelX + 1, client.bottom}, Contents::Draw);
}

// A value too wide for its column widens its cell: both the cells that are shown and those that will be.
void CGraph::InvalidateValues(CGraphWindow& window, Contents contents) {
    InvalidateScreenRects(window, kValueRect, contents);
    if (!m_Font)
        return;
    const CConsole console(m_Data, window.GetClientRect(), m_Console, m_bConsoleOnLeft);
    for (const PixelRect& cell : console.GetWideCells(*m_Font, {m_nCursor, m_nFixedCursor}))
        window.Invalidate(cell, contents);
}

void CGraph::Zoom(CGraphWindow& window, float factor) {
    const float before = m_Canvas.GetZoom();
    m_Canvas.Zoom(factor, static_cast<float>(m_nCursor));
    if (m_Canvas.GetZoom() != before)
        window.Invalidate();
}

void CGraph::OnHScroll(CGraphWindow& window, ScrollCode code, uint32_t position) {
    const WorldRect before = m_Canvas.GetVisible();
    const float fullX2 = m_Canvas.GetFull().x2;
    const float width = before.x2 - before.x1;
    const auto moved = [&](float by) {
        return WorldRect{before.x1 + by, before.y1, before.x2 + by, before.y2};
    };
    const auto from = [&](float x1, float x2) { return WorldRect{x1, before.y1, x2, before.y2}; };

    WorldRect request = before;
    switch (code) {
    case ScrollCode::LineLeft:
        request = moved(-width / 10.0F);
        break;
    case ScrollCode::LineRight:
        request = moved(width / 10.0F);
        break;
    case ScrollCode::PageLeft:
        request = moved(-width * 0.5F);
        break;
    case ScrollCode::PageRight:
        request = moved(width * 0.5F);
        break;
    case ScrollCode::ThumbPosition:
    case ScrollCode::ThumbTrack: {
        // Positions behind the data would lose the width to rounding; they all show its end.
        const float start = std::min(static_cast<float>(position), std::max(fullX2, 0.0F));
        request = from(start, start + width);
        break;
    }
    // The two ends do not simply jump there; the canvas decides what such a request shows.
    case ScrollCode::LeftEnd:
        request = from(0.0F, before.x2 - width);
        break;
    case ScrollCode::RightEnd:
        request = from(fullX2 - width, before.x2 - fullX2);
        break;
    }
    m_Canvas.SetVisible(request);
    if (m_Canvas.GetVisible() != before) {
        UpdateScrollBar(window);
        window.Invalidate();
    }
}

void CGraph::UpdateScrollBar(CGraphWindow& window) const {
    const WorldRect& full = m_Canvas.GetFull();
    const WorldRect& visible = m_Canvas.GetVisible();
    window.SetScrollBar({static_cast<int>(full.x1) + 1, static_cast<int>(full.x2) - 1,
                         static_cast<int>(visible.x2 - visible.x1), static_cast<int>(visible.x1)});
}

} // namespace Tracelyn
