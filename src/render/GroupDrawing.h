// Draws the bands of the groups: header rows and plots.
#pragma once

#include "render/CurveDrawing.h"
#include "render/EventDrawing.h"
#include "render/GraphDrawingContext.h"

#include <QRegion>

#include <optional>
#include <vector>

namespace Tracelyn {

class CCanvas;
class CGraphDataGroup;
class CGraphDataSet;
struct MinMax;

class CGroupDrawing {
public:
    // `clip` holds the pixels that bands may touch. With `everyEvent` no sample in view is hidden.
    CGroupDrawing(CGraphDrawingContext& context, CCanvas& canvas, const QRegion& clip, bool everyEvent);

    // Bands below the window are left out, clickable rectangles included.
    void Draw();

    // The pixels of all expanded bands.
    static QRegion GetExpandedBands(const CGraphDrawingContext& context);

private:
    void DrawHeader(const CGraphDataGroup& group);
    void DrawSharedPlot(const CGraphDataGroup& group);
    void DrawSeparateRows(const CGraphDataGroup& group);
    void DrawSet(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom);
    // The extremes of the samples in view; MinMax::None() when there are none.
    MinMax GetVisibleRange(const CGraphDataSet& set, const PixelRect& plot);
    MinMax GetRangeOfEvents(const CGraphDataSet& set, const CMapping& mapping, const PixelRect& plot);

    CGraphDrawingContext& m_Context;
    CCanvas& m_Canvas;
    QRegion m_Clip;
    // The columns of the band that is being drawn in which its plot must be brought up to date.
    std::vector<ColumnRange> m_Columns;
    // Draws the curves instead, when every event is to be shown.
    std::optional<CEventDrawing> m_Events;
};

} // namespace Tracelyn
