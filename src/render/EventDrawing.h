// Draws the samples of a data set so that none of them is hidden, however many fall on one pixel column.
#pragma once

#include "render/ColumnSums.h"
#include "render/CurveDrawing.h"
#include "render/Mapping.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

class QPoint;

namespace Tracelyn {

class CPixelPainter;
struct PainterMemory;
struct ShownSet;

// In each pixel column a curve covers all samples that fall on it, from the smallest to the largest, and the
// lines from the last sample of a column to the first of the next. Values that are not finite are gaps. An
// on/off signal is a thin line where it is off and a bar where it is on; a column in which it is both on and
// off shows the upper and the lower part of a bar and nothing between them.
//
// What a column shows does not depend on which columns are asked for: a repainted strip joins its
// surroundings. The work depends on the number of columns, not on that of the samples.
class CEventDrawing {
public:
    // `axis` maps samples to the pixels of the client area. The painter's memory is that of the frame.
    CEventDrawing(CPixelPainter& painter, PainterMemory& memory, const CMapping& axis,
                  const PixelRect& client);

    // Behind the last sample in view.
    int64_t GetEndOfView() const { return m_nEndOfView; }
    // Begins to sum up the samples of all columns of these sets: Draw is faster then. Called at most once,
    // for the sets of a whole frame of which most columns are drawn.
    void BeginSumsOf(std::span<const PlacedSet> sets);
    // What Draw draws from now on: the parts of these columns inside the client area.
    void SetColumns(std::span<const ColumnRange> columns);
    // `values` maps raw values to the rows of the plot.
    void Draw(const ShownSet& shown, const CMapping& values);

private:
    // Columns side by side. Samples [starts[k], starts[k + 1]) of the axis fall on column left + k.
    struct Strip {
        int left;
        std::vector<int64_t> starts;
    };
    enum class Lane { None, Off, On, Both };

    int64_t FindEndOfView() const;
    int ColumnOf(int64_t index) const;
    // The same, but for a sample on the right edge of the view, which counts for the last column.
    int ColumnInView(int64_t index) const;
    // The first sample in view that falls on the column or lies to its right.
    int64_t FirstSampleFrom(int column) const;
    std::vector<int64_t> StartsOf(int left, int right) const;
    void SumUp(const ShownSet& shown, const Strip& strip);
    void DrawCurve(const ShownSet& shown, const CMapping& values, const Strip& strip);
    void JoinNeighbours(PixelRect& first, int y1, PixelRect& second, int y2);
    void DrawLane(const ShownSet& shown, const CMapping& values, const Strip& strip);
    void DrawLaneRun(Lane lane, int from, int to, const CMapping& values);
    void Join(const std::optional<QPoint>& from, const std::optional<QPoint>& to);

    CPixelPainter& m_Painter;
    CFrameSums& m_FrameSums;
    support::CBackgroundTasks& m_Tasks;
    CMapping m_Axis;
    PixelRect m_Client;
    int64_t m_nEndOfView;
    std::vector<ColumnRange> m_Columns;
    std::vector<Strip> m_Strips; // of these columns
    ColumnSums m_Own;            // of a set that is not among those of the frame
    // Of the set and the strip that are being drawn.
    std::span<const int> m_Bounds;
    std::span<const SampleSummary> m_Summaries;
};

} // namespace Tracelyn
