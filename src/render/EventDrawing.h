// Draws the samples of a data set so that none of them is hidden, however many fall on one pixel column.
#pragma once

#include "model/GraphDataTypedSource.h"
#include "render/CurveDrawing.h"
#include "render/Mapping.h"

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

class QPoint;

namespace Tracelyn {

class CPixelPainter;
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
    // `axis` maps samples to the pixels of the client area.
    CEventDrawing(CPixelPainter& painter, const CMapping& axis, const PixelRect& client)
        : m_Painter(painter), m_Axis(axis), m_Client(client), m_nEndOfView(FindEndOfView()) {}

    // Behind the last sample in view.
    int64_t GetEndOfView() const { return m_nEndOfView; }
    // A set whose sample i stands at sample i + shift of the axis.
    struct PlacedSet {
        const CGraphDataSet* set;
        int shift;
    };
    // Sums up the samples of all columns of these sets, on all cores: Draw is faster then. For the sets of a
    // whole frame, of which most columns are drawn.
    void SumUpAhead(std::span<const PlacedSet> sets);
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
    // What the samples of a set come to in columns side by side: of those of column k,
    // [bounds[k], bounds[k + 1]) in the set, summaries[k].
    struct Sums {
        std::vector<int> bounds;
        std::vector<SampleSummary> summaries;

        void SumUp(const PlacedSet& placed, std::span<const int64_t> starts);
    };

    std::vector<int64_t> StartsOf(int left, int right) const;
    void SumUp(const ShownSet& shown, const Strip& strip);
    void DrawCurve(const ShownSet& shown, const CMapping& values, const Strip& strip);
    void DrawLane(const ShownSet& shown, const CMapping& values, const Strip& strip);
    void DrawLaneRun(Lane lane, int from, int to, const CMapping& values);
    void Join(const std::optional<QPoint>& from, const std::optional<QPoint>& to);

    CPixelPainter& m_Painter;
    CMapping m_Axis;
    PixelRect m_Client;
    int64_t m_nEndOfView;
    std::vector<ColumnRange> m_Columns;
    std::vector<Strip> m_Strips;                            // of these columns
    std::unordered_map<const CGraphDataSet*, Sums> m_Ahead; // of all columns of the client area
    Sums m_Own;                                             // of a set that is not there
    // Of the set and the strip that are being drawn.
    std::span<const int> m_Bounds;
    std::span<const SampleSummary> m_Summaries;
};

} // namespace Tracelyn
