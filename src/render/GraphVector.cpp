// The graph's frame for a file of lines and texts.
#include "render/Console.h"
#include "render/Graph.h"
#include "render/GraphDrawingContext.h"
#include "render/GroupDrawing.h"

namespace Tracelyn {

// Nothing clips: the console covers the bands with an area of its own instead of being cut out of them. It is
// drawn on a canvas of its own, so that what is clickable stays as the window shows it.
void CGraph::DrawVector(CGraphDrawingContext& context) const {
    CPixelPainter& painter = context.GetPainter();
    const PixelRect& client = context.GetClient();
    painter.Fill(client, context.GetColors().background);
    if (!m_Data.HasData())
        return;
    CCanvas canvas = m_Canvas;
    canvas.BeginDraw(painter, client);
    CGroupDrawing(context, canvas, client.ToQRect()).Draw();
    DrawCursorLines(context, canvas);

    const CConsole console(m_Data, client, m_Console, m_bConsoleOnLeft);
    painter.SetClip(console.GetRegion() & client.ToQRect());
    for (const QRect& rect : console.GetRegion())
        painter.Fill(PixelRect::From(rect), context.GetColors().background);
    console.Draw(context, canvas, {m_nCursor, m_nFixedCursor});
}

} // namespace Tracelyn
