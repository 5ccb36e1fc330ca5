#include "render/EventDrawing.h"

#include "model/GraphDataSet.h"
#include "render/GraphDrawingContext.h"
#include "render/LineRuns.h"
#include "render/PainterMemory.h"
#include "render/PixelPainter.h"

#include <QPoint>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tracelyn {

namespace {

// The height of a plot may be less than a pixel.
struct LaneRows {
    int top;
    int bottom; // excluded
    int middle; // the row of the thin line

    explicit LaneRows(const CMapping& values)
        : top(std::min(values.WorldToPixelY(0.0F), values.WorldToPixelY(1.0F))),
          bottom(std::max({values.WorldToPixelY(0.0F), values.WorldToPixelY(1.0F), top + 1})),
          middle(values.WorldToPixelY(0.5F)) {}
};

std::optional<QPoint> PointOf(int column, float value, const CMapping& values) {
    return std::isfinite(value) ? std::optional(QPoint(column, values.WorldToPixelY(value))) : std::nullopt;
}

} // namespace

CEventDrawing::CEventDrawing(CPixelPainter& painter, PainterMemory& memory, const CMapping& axis,
                             const PixelRect& client)
    : m_Painter(painter), m_FrameSums(memory.frameSums), m_Tasks(memory.tasks), m_Axis(axis),
      m_Client(client), m_nEndOfView(FindEndOfView()) {}

void CEventDrawing::SetColumns(std::span<const ColumnRange> columns) {
    if (std::ranges::equal(columns, m_Columns)) // as in most bands
        return;
    m_Columns.assign(columns.begin(), columns.end());
    m_Strips.clear();
    for (const ColumnRange& range : columns) {
        const int left = std::max(range.left, m_Client.left);
        const int right = std::min(range.right, m_Client.right);
        if (left >= right)
            continue;
        m_Strips.push_back({left, StartsOf(left, right)});
    }
}

std::vector<int64_t> CEventDrawing::StartsOf(int left, int right) const {
    if (const auto all = m_FrameSums.GetStarts(); !all.empty()) {
        const auto first = all.begin() + (left - m_Client.left);
        return {first, first + (right - left) + 1};
    }
    std::vector<int64_t> starts;
    for (int column = left; column <= right; ++column)
        starts.push_back(column < m_Client.right ? FirstSampleFrom(column) : m_nEndOfView);
    return starts;
}

void CEventDrawing::BeginSumsOf(std::span<const PlacedSet> sets) {
    m_FrameSums.Begin(sets, StartsOf(m_Client.left, m_Client.right), m_Tasks);
}

void CEventDrawing::Draw(const ShownSet& shown, const CMapping& values) {
    m_Painter.SetPen(shown.color);
    for (const Strip& strip : m_Strips) {
        SumUp(shown, strip);
        if (shown.set.IsBinary())
            DrawLane(shown, values, strip);
        else
            DrawCurve(shown, values, strip);
    }
}

int CEventDrawing::ColumnOf(int64_t index) const {
    return m_Axis.WorldToPixelX(static_cast<float>(index));
}

int CEventDrawing::ColumnInView(int64_t index) const {
    const int column = ColumnOf(index);
    return index < m_nEndOfView ? std::min(column, m_Client.right - 1) : column;
}

// Whole numbers beyond 2^24 are rounded to floats: the sample is searched for, around its place.
int64_t CEventDrawing::FirstSampleFrom(int column) const {
    constexpr int64_t kEnd = std::numeric_limits<int>::max();
    const int64_t first = std::clamp<int64_t>(m_Axis.PixelToIndex(m_Client.left), 0, kEnd);
    const auto place = std::clamp(static_cast<int64_t>(m_Axis.PixelToWorldX(column)), first, kEnd);
    int64_t slack = 2 + m_Axis.GetSamplesPerPixel() / 64 + place / (1 << 22);
    int64_t from = place;
    while (from > first && ColumnOf(from) >= column)
        from = std::max(from - slack, first), slack *= 2;
    int64_t to = place;
    while (to < kEnd && ColumnOf(to) < column)
        to = std::min(to + slack, kEnd), slack *= 2;
    while (from < to) {
        const int64_t middle = from + (to - from) / 2;
        if (ColumnOf(middle) < column)
            from = middle + 1;
        else
            to = middle;
    }
    return from;
}

int64_t CEventDrawing::FindEndOfView() const {
    const double right = m_Axis.PixelToWorldX(m_Client.right);
    int64_t end = std::max(FirstSampleFrom(m_Client.right), static_cast<int64_t>(std::floor(right)) + 1);
    // The edge of the view is a float, to which whole numbers beyond 2^24 are rounded.
    while (double{static_cast<float>(end)} <= right)
        ++end;
    return end;
}

void CEventDrawing::SumUp(const ShownSet& shown, const Strip& strip) {
    const PlacedSet placed{&shown.set, shown.shift};
    const size_t columns = strip.starts.size() - 1;
    size_t first = 0;
    const ColumnSums* sums = m_FrameSums.Find(placed, m_Tasks);
    if (sums != nullptr) {
        first = static_cast<size_t>(strip.left - m_Client.left);
    } else {
        m_Own.SetColumns(placed, strip.starts);
        m_Own.SumUp(shown.set, 0, columns);
        sums = &m_Own;
    }
    m_Bounds = std::span(sums->bounds).subspan(first, columns + 1);
    m_Summaries = std::span(sums->summaries).subspan(first, columns);
}

void CEventDrawing::DrawCurve(const ShownSet& shown, const CMapping& values, const Strip& strip) {
    const auto pointAt = [&](int index) {
        return PointOf(ColumnInView(int64_t{index} + shown.shift),
                       static_cast<float>(shown.set.GetValue(index, kNoReference)), values);
    };
    std::optional<QPoint> pen;
    if (m_Bounds.front() > 0)
        pen = pointAt(m_Bounds.front() - 1);
    PixelRect covered; // of the column of the pen; empty outside the strip
    for (size_t k = 0; k < m_Summaries.size(); ++k) {
        if (m_Bounds[k] == m_Bounds[k + 1])
            continue;
        const int column = strip.left + static_cast<int>(k);
        const SampleSummary& samples = m_Summaries[k];
        PixelRect rows{column, 0, column + 1, 0};
        if (samples.finite.HasValue()) {
            const auto [top, bottom] = std::minmax(
                {values.WorldToPixelY(samples.finite.min), values.WorldToPixelY(samples.finite.max)});
            rows.top = top;
            rows.bottom = bottom + 1;
        }
        const auto first = PointOf(column, samples.first, values);
        if (pen && first) {
            if (covered.right == column && covered.GetHeight() > 0 && rows.GetHeight() > 0)
                JoinNeighbours(covered, pen->y(), rows, first->y());
            else
                Join(pen, first);
        }
        m_Painter.Bar(covered);
        covered = rows;
        pen = PointOf(column, samples.last, values);
    }
    m_Painter.Bar(covered);
    if (m_Bounds.back() < shown.set.GetCount())
        Join(pen, pointAt(m_Bounds.back()));
    else if (!shown.endsWithItsData && pen)
        Join(pen, QPoint(m_Client.right, pen->y()));
}

// Widens both by the pixels of the line from row y1 of the first to row y2 of the second, which lies right
// beside it. These rows must be among those that their columns have: otherwise a gap would be filled, too.
void CEventDrawing::JoinNeighbours(PixelRect& first, int y1, PixelRect& second, int y2) {
    ForEachLineRun(first.left, y1, second.left, y2, m_Client, [&](int x, int y, int /*width*/, int height) {
        PixelRect& column = x == first.left ? first : second;
        column.top = std::min(column.top, y);
        column.bottom = std::max(column.bottom, y + height);
    });
}

void CEventDrawing::DrawLane(const ShownSet& shown, const CMapping& values, const Strip& strip) {
    const auto stateOf = [](const MinMax& range) {
        return range.max < 0.5F ? Lane::Off : range.min < 0.5F ? Lane::Both : Lane::On;
    };
    const auto stateAt = [&](int index) {
        return shown.set.GetValue(index, kNoReference) < 0.5 ? Lane::Off : Lane::On;
    };
    // A column without samples goes on with the one before.
    Lane before = m_Bounds.front() > 0 ? stateAt(m_Bounds.front() - 1) : Lane::None;
    Lane run = Lane::None;
    int runFrom = strip.left;
    for (size_t k = 0; k <= m_Summaries.size(); ++k) {
        const int column = strip.left + static_cast<int>(k);
        Lane lane = Lane::None;
        if (k < m_Summaries.size()) {
            const bool isOver = shown.endsWithItsData && m_Bounds[k] == shown.set.GetCount();
            lane = isOver ? Lane::None : before;
            if (m_Bounds[k] < m_Bounds[k + 1]) {
                lane = stateOf(m_Summaries[k].finite);
                before = m_Summaries[k].last < 0.5F ? Lane::Off : Lane::On;
            }
        }
        if (lane == run)
            continue;
        DrawLaneRun(run, runFrom, column, values);
        run = lane;
        runFrom = column;
    }
    DrawLaneRun(run, runFrom, strip.left + static_cast<int>(m_Summaries.size()), values);
}

void CEventDrawing::DrawLaneRun(Lane lane, int from, int to, const CMapping& values) {
    const LaneRows rows(values);
    switch (lane) {
    case Lane::None:
        return;
    case Lane::Off:
        m_Painter.Line(from, rows.middle, to, rows.middle);
        return;
    case Lane::On:
        m_Painter.Bar({from, rows.top, to, rows.bottom});
        m_Painter.Line(from, rows.middle, to, rows.middle);
        return;
    case Lane::Both: {
        // The middle third, at least the row of the thin line.
        const int half = (rows.bottom - rows.top) / 6;
        m_Painter.Bar({from, rows.top, to, rows.middle - half});
        m_Painter.Bar({from, rows.middle + half + 1, to, rows.bottom});
        return;
    }
    }
}

void CEventDrawing::Join(const std::optional<QPoint>& from, const std::optional<QPoint>& to) {
    if (from && to)
        m_Painter.Line(from->x(), from->y(), to->x(), to->y());
}

} // namespace Tracelyn
