#include "render/Graph.h"

#include "reader/csv/CsvExport.h"
#include "render/Console.h"
#include "render/GraphDrawingContext.h"
#include "render/GroupDrawing.h"
#include "render/PainterMemory.h"

#include <QPainter>

#include <algorithm>
#include <atomic>
#include <utility>

namespace Tracelyn {

namespace {

// Atomic, since graphs of their own may be drawn at the same time.
std::atomic<bool> g_bFileJustOpened = false;

} // namespace

void SetFileJustOpened(bool opened) {
    g_bFileJustOpened = opened;
}

bool TakeFileJustOpened() {
    return g_bFileJustOpened.exchange(false);
}

CGraph::CGraph() = default;
CGraph::~CGraph() = default;

void CGraph::Draw(CGraphWindow& window, QPainter& painter, const CPaintArea& area) {
    const PixelRect client = window.GetClientRect();
    if (!m_Memory)
        m_Memory = std::make_unique<PainterMemory>();
    UpdateScrollBar(window);

    LayoutBands(m_Data, client);
    m_Console = {};
    if (m_Options.console)
        m_Console =
            MeasureConsole(m_Data, [&](const QString& text) { return m_Memory->font.GetTextWidth(text); });
    m_nLastIndex = m_Data.GetMaxCount() - 1;
    if (m_bResetPending)
        ResetRange(client);

    CGraphDrawingContext context(painter, *m_Memory, client, area, m_Data, m_Options, m_bDarkScheme);
    if (context.GetPainter().IsVector()) {
        DrawVector(context);
        return;
    }
    m_Canvas.BeginDraw(context.GetPainter(), client);
    if (m_Data.HasData())
        DrawData(context, CConsole(m_Data, client, m_Console, m_bConsoleOnLeft));
    else
        context.GetPainter().Fill(client, context.GetColors().background);
    m_Canvas.EndDraw();
}

void CGraph::DrawBackground(QPainter& painter, const QRegion& region) const {
    const ColorScheme& colors = m_bDarkScheme ? ColorScheme::Dark() : ColorScheme::Light();
    for (const QRect& rect : region)
        painter.fillRect(rect, colors.background);
}

void CGraph::ResetRange(const PixelRect& client) {
    m_Data.SelectFirstGroup();
    m_Canvas.SetWorld({0.0F, static_cast<float>(client.top), static_cast<float>(m_nLastIndex),
                       static_cast<float>(client.bottom)});
    m_nCursor = m_nLastIndex / 2;
    m_bResetPending = false;
}

void CGraph::DrawData(CGraphDrawingContext& context, const CConsole& console) {
    CPixelPainter& painter = context.GetPainter();
    const PixelRect& client = context.GetClient();
    const QRegion consoleRegion = console.GetRegion();
    QRegion frame(client.ToQRect());
    // A value cell may reach out of the console over a band that keeps its pixels. The margin holds for scale
    // factors between whole ones.
    const QRegion kept = context.GetArea().GetKept() - consoleRegion;
    if (!kept.isEmpty())
        frame -= (Widened(kept, 2) & CGroupDrawing::GetExpandedBands(context)) -
                 context.GetArea().GetContents() - consoleRegion;
    // Some pixels between the console's boxes belong neither to it nor to a band. One pixel more is filled on
    // each side: between whole scale factors the region ends inside pixels of the screen.
    painter.SetClip(frame & Widened(consoleRegion, 1));
    painter.Fill(client, context.GetColors().background);
    console.Draw(context, m_Canvas, {m_nCursor, m_nFixedCursor});

    const QRegion clip = frame - consoleRegion;
    painter.SetClip(clip - CGroupDrawing::GetFilledPlots(context));
    painter.Fill(client, context.GetColors().background);
    CGroupDrawing(context, m_Canvas, clip).Draw();
    DrawCursorLines(context, m_Canvas);
}

void CGraph::DrawCursorLines(CGraphDrawingContext& context, CCanvas& canvas) const {
    const WorldRect& visible = canvas.GetVisible();
    canvas.SetMapping(context.GetClient(), visible);
    const auto drawLine = [&](int index, const QColor& color) {
        context.GetPainter().SetPen(color);
        canvas.MoveTo(static_cast<float>(index), visible.y1);
        canvas.LineTo(static_cast<float>(index), visible.y2);
    };
    if (m_nFixedCursor != kNoReference)
        drawLine(m_nFixedCursor, context.GetColors().fixedCursor);
    drawLine(m_nCursor, context.GetColors().cursor);
    context.GetPainter().Finish();
}

void CGraph::Clear() {
    RememberGroupStates();
    m_Options.behind.clear();
    m_Data.Clear();
    m_Canvas = CCanvas();
    m_Memory.reset();
}

void CGraph::ToggleGroupAt(CGraphWindow& window, unsigned /*buttons*/, int x, int y) {
    const SCREENRECT* const hit = m_Canvas.HitTest(x, y);
    if (hit == nullptr || hit->key.kind != ScreenRectKind::GroupName)
        return;
    CGraphDataGroup* const group = m_Data.FindGraphGroup(hit->key.name);
    if (group == nullptr)
        return;
    group->m_bExpanded = !group->m_bExpanded;
    window.Invalidate();
}

void CGraph::SelectNextGroup(CGraphWindow& window) {
    m_Data.SelectNextGroup();
    InvalidateScreenRects(window, kGroupUnderlineRect);
}

void CGraph::SelectPreviousGroup(CGraphWindow& window) {
    m_Data.SelectPreviousGroup();
    InvalidateScreenRects(window, kGroupUnderlineRect);
}

bool CGraph::SelectGroup(CGraphWindow& window, int number) {
    const bool exists = m_Data.SelectGroupByNumber(number);
    InvalidateScreenRects(window, kGroupUnderlineRect);
    return exists;
}

void CGraph::ToggleSelectedGroup(CGraphWindow& window) {
    m_Data.ToggleSelectedGroupExpanded();
    window.Invalidate();
}

void CGraph::ToggleConsoleSide(CGraphWindow& window) {
    m_bConsoleOnLeft = !m_bConsoleOnLeft;
    window.Invalidate();
}

void CGraph::ToggleBackground(CGraphWindow& window) {
    m_bDarkScheme = !m_bDarkScheme;
    window.Invalidate();
}

void CGraph::InvalidateScreenRects(CGraphWindow& window, const ScreenRectKey& key, Contents contents) const {
    std::vector<SCREENRECT> rects;
    m_Canvas.CollectScreenRects(key, rects);
    for (const SCREENRECT& rect : rects)
        window.Invalidate({rect.left, rect.top, rect.right, rect.bottom}, contents);
}

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

void CGraph::MoveCursor(CGraphWindow& window, int by) {
    const int64_t index = int64_t{m_nCursor} + by;
    SetCursorPosition(window, static_cast<int>(std::clamp<int64_t>(index, 0, std::max(m_nLastIndex, 0))));
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
    if (!m_Memory)
        return;
    const CConsole console(m_Data, window.GetClientRect(), m_Console, m_bConsoleOnLeft);
    for (const PixelRect& cell : console.GetWideCells(m_Memory->font, {m_nCursor, m_nFixedCursor}))
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
    // These two requests are no ranges at either end; the canvas moves them into the full range like any
    // other.
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
    window.SetScrollBar({TruncateToInt(full.x1) + 1, TruncateToInt(full.x2) - 1,
                         TruncateToInt(visible.x2 - visible.x1), TruncateToInt(visible.x1)});
}

ExportEnd CGraph::ExportCsv(CCsvFile& file, const support::Progress& progress) const {
    return Tracelyn::ExportCsv(m_Data, file, progress);
}

} // namespace Tracelyn
