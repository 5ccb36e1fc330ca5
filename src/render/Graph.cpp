#include "render/Graph.h"

#include "reader/csv/CsvExport.h"
#include "render/Console.h"
#include "render/GraphDrawingContext.h"
#include "render/GroupDrawing.h"

#include <QPainter>

#include <algorithm>

namespace Tracelyn {

void CGraph::Draw(CGraphWindow& window, QPainter& painter, const PaintArea& area) {
    const PixelRect client = window.GetClientRect();
    if (!m_Font)
        m_Font.emplace();
    UpdateScrollBar(window);

    LayoutBands(m_Data, client);
    m_Console = MeasureConsole(m_Data, [&](const QString& text) { return m_Font->Width(text); });
    m_nLastIndex = m_Data.GetMaxCount() - 1;
    if (m_bResetPending)
        ResetRange(client);

    CGraphDrawingContext context(painter, *m_Font, client, area, m_Data, m_bDarkScheme);
    m_Canvas.BeginDraw(context.GetPainter(), client);
    if (m_Data.HasData())
        DrawContents(context, CConsole(m_Data, client, m_Console, m_bConsoleOnLeft));
    else
        context.GetPainter().Fill(client, context.GetColors().background);
    m_Canvas.EndDraw();
}

void CGraph::ResetRange(const PixelRect& client) {
    m_Data.SelectFirstGroup();
    m_Canvas.SetWorld({0.0F, static_cast<float>(client.top), static_cast<float>(m_nLastIndex),
                       static_cast<float>(client.bottom)});
    m_nCursor = m_nLastIndex / 2;
    m_bResetPending = false;
}

void CGraph::DrawContents(CGraphDrawingContext& context, const CConsole& console) {
    CPixelPainter& painter = context.GetPainter();
    const PixelRect& client = context.GetClient();
    const QRegion consoleRegion = console.GetRegion();
    QRegion frame(client.ToQRect());
    const PaintArea& area = context.GetArea();
    // Expanded bands keep their pixels also where a long text of the console reaches out of its boxes.
    if (area.GetContents() != area.GetRegion())
        frame = (frame - CGroupDrawing::GetExpandedBands(context)) + area.GetContents() + consoleRegion;
    // Some pixels between the console's boxes belong neither to it nor to a band. One pixel more is filled on
    // each side: between whole scale factors the region ends inside pixels of the screen.
    painter.SetClip(frame & Widened(consoleRegion, 1));
    painter.Fill(client, context.GetColors().background);
    painter.SetClip(frame);
    console.Draw(context, m_Canvas, {m_nCursor, m_nFixedCursor});

    const QRegion clip = frame - consoleRegion;
    painter.SetClip(clip);
    painter.Fill(client, context.GetColors().background);
    CGroupDrawing(context, m_Canvas, clip).Draw();
    DrawCursorLines(context);
}

void CGraph::DrawCursorLines(CGraphDrawingContext& context) {
    const WorldRect& visible = m_Canvas.GetVisible();
    m_Canvas.SetMapping(context.GetClient(), visible);
    const auto drawLine = [&](int index, const QColor& color) {
        context.GetPainter().SetPen(color);
        m_Canvas.MoveTo(static_cast<float>(index), visible.y1);
        m_Canvas.LineTo(static_cast<float>(index), visible.y2);
    };
    if (m_nFixedCursor != kNoReference)
        drawLine(m_nFixedCursor, context.GetColors().fixedCursor);
    drawLine(m_nCursor, context.GetColors().cursor);
    context.GetPainter().Flush();
}

void CGraph::Clear() {
    RememberGroupStates();
    m_Data.Clear();
    m_Canvas = CCanvas();
    m_Font.reset();
}

void CGraph::ToggleGroupAt(CGraphWindow& window, unsigned /*buttons*/, int x, int y) {
    const SCREENRECT* const hit = m_Canvas.HitTest(x, y);
    if (hit == nullptr || hit->key.kind != ScreenRectKind::GroupName)
        return;
    for (const auto& group : m_Data.GetGroups()) {
        if (group->IsDisplayedAsGraph() && group->m_strName == hit->key.name) {
            group->m_bExpanded = !group->m_bExpanded;
            window.Invalidate();
            return;
        }
    }
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

void CGraph::ExportCsv(CCsvFile& file) const {
    Tracelyn::ExportCsv(m_Data, file);
}

} // namespace Tracelyn
