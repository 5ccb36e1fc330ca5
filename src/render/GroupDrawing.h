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
    // `clip` holds the pixels that bands may touch.
    CGroupDrawing(CGraphDrawingContext& context, CCanvas& canvas, const QRegion& clip);

    // Bands below the window are left out, clickable rectangles included.
    void Draw();

    // The pixels of all expanded bands.
    static QRegion GetExpandedBands(const CGraphDrawingContext& context);
    // The pixels whose background Draw fills itself; that of all others is there before.
    static QRegion GetFilledPlots(const CGraphDrawingContext& context);

private:
    // The signal of the second recording that stands for one of the first, and how its raw values become
    // those of the first: raw * factor + offset.
    struct Behind {
        const CGraphDataSet* set;
        double factor;
        double offset;
    };

    void BeginEvents();
    void DrawHeader(const CGraphDataGroup& group);
    void DrawSharedPlot(const CGraphDataGroup& group);
    void DrawSeparateRows(const CGraphDataGroup& group);
    // First what lies behind all sets of a plot, then the sets.
    void DrawBehind(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom);
    void DrawSet(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom);
    void DrawShown(const ShownSet& shown, const PixelRect& plot, float top, float bottom);
    // The scale that a set wants, with what lies behind it.
    MinMax GetVisibleRange(const CGraphDataSet& set, const PixelRect& plot) const;
    MinMax GetRangeOfSet(const CGraphDataSet& set, const PixelRect& plot) const;
    MinMax GetRangeBehind(const CGraphDataSet& set, const PixelRect& plot) const;
    std::optional<Behind> FindBehind(const CGraphDataSet& set) const;

    CGraphDrawingContext& m_Context;
    CCanvas& m_Canvas;
    QRegion m_Clip;
    // The columns of the band that is being drawn in which its plot must be brought up to date.
    std::vector<ColumnRange> m_Columns;
    // Draws the curves instead, when every event is to be shown.
    std::optional<CEventDrawing> m_Events;
};

} // namespace Tracelyn
