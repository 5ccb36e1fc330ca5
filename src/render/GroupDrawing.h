// Draws the bands of the groups: header rows and plots.
#pragma once

#include "render/GraphDrawingContext.h"

#include <QRegion>

namespace Tracelyn {

class CCanvas;
class CGraphDataGroup;
class CGraphDataSet;
struct MinMax;

class CGroupDrawing {
public:
    // `clip` holds the pixels that bands may touch. Without contents the expanded groups get their headers
    // only.
    CGroupDrawing(CGraphDrawingContext& context, CCanvas& canvas, const QRegion& clip, bool withContents)
        : m_Context(context), m_Canvas(canvas), m_Clip(clip), m_bWithContents(withContents) {}

    // Bands below the window are left out, clickable rectangles included.
    void Draw();

    // The pixels of all expanded bands.
    static QRegion ExpandedBands(const CGraphDrawingContext& context);

private:
    void DrawHeader(const CGraphDataGroup& group);
    void DrawSharedPlot(const CGraphDataGroup& group);
    void DrawSeparateRows(const CGraphDataGroup& group);
    void DrawSet(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom);
    MinMax VisibleRange(const CGraphDataSet& set, const PixelRect& plot);

    CGraphDrawingContext& m_Context;
    CCanvas& m_Canvas;
    const QRegion& m_Clip;
    bool m_bWithContents;
};

} // namespace Tracelyn
