#include "render/GroupDrawing.h"

#include "model/GraphData.h"
#include "model/MinMax.h"
#include "render/Canvas.h"
#include "render/GraphLayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Tracelyn {

namespace {

using Metrics = LayoutMetrics;

// Separator lines end here, beyond the right edge of most windows.
constexpr float kFarRight = 10000.0F;

PixelRect BandRect(const CGraphDrawingContext& context, const CGraphDataGroup& group) {
    const PixelRect& client = context.GetClient();
    return {client.left, group.m_nTop, client.right, group.m_nTop + group.m_nHeight};
}

PixelRect PlotRect(const CGraphDrawingContext& context, const CGraphDataGroup& group) {
    PixelRect plot = BandRect(context, group);
    plot.top += group.m_nTopMargin;
    plot.bottom -= Metrics::kSeparatorLines + group.m_nBottomMargin + 1;
    return plot;
}

// The plot's background is filled together with its curves, after the header is drawn. Not where the header
// may have a part in the plot, as marks below letters do.
bool FillsItsPlot(const CGraphDrawingContext& context, const CGraphDataGroup& group) {
    return context.GetPainter().ReachesPixels() && group.IsDisplayedAsGraph() && group.m_bExpanded &&
           !group.m_bSeparateSets && group.m_nTopMargin > 0 && CSmallFont::KnowsInk(group.m_strName);
}

bool IsDrawn(const CGraphDataSet& set) {
    return set.IsDisplayedAsGraph() && set.GetCount() > 0;
}

// Of the samples [from, to) of the set.
MinMax GetFiniteRange(const CGraphDataSet& set, int from, int to) {
    SampleSummary samples{};
    set.Summarize(std::array{from, to}, std::span(&samples, 1));
    return samples.finite;
}

// A range without height gets one above its value, so that a constant lies along the lower edge of its plot.
// From 2^24 on the next float is more than 1 away; above the largest float there is none.
MinMax WithHeight(const MinMax& range) {
    if (range.max != range.min || !std::isfinite(range.min))
        return range;
    const float next = std::nextafter(range.min, std::numeric_limits<float>::max());
    return {range.min, std::max(range.min + 1.0F, next)};
}

} // namespace

CGroupDrawing::CGroupDrawing(CGraphDrawingContext& context, CCanvas& canvas, const QRegion& clip)
    : m_Context(context), m_Canvas(canvas), m_Clip(clip) {
    if (context.GetOptions().everyEvent)
        m_Events.emplace(context.GetPainter(), context.GetMemory(), canvas.GetTimeAxis(),
                         context.GetClient());
}

QRegion CGroupDrawing::GetExpandedBands(const CGraphDrawingContext& context) {
    QRegion region;
    for (const auto& group : context.GetData().GetGroups()) {
        if (group->IsDisplayedAsGraph() && group->m_bExpanded)
            region += BandRect(context, *group).ToQRect() & context.GetClient().ToQRect();
    }
    return region;
}

QRegion CGroupDrawing::GetFilledPlots(const CGraphDrawingContext& context) {
    QRegion region;
    for (const auto& group : context.GetData().GetGroups()) {
        if (FillsItsPlot(context, *group))
            region += PlotRect(context, *group).ToQRect() & context.GetClient().ToQRect();
    }
    return region;
}

void CGroupDrawing::Draw() {
    if (m_Events)
        BeginEvents();
    for (const auto& group : m_Context.GetData().GetGroups()) {
        if (!group->IsDisplayedAsGraph())
            continue;
        const PixelRect band = BandRect(m_Context, *group);
        if (band.top >= m_Context.GetClient().bottom)
            break;
        const QRegion clip = m_Clip & band.ToQRect();
        m_Context.GetPainter().SetClip(clip);
        DrawHeader(*group);
        if (!group->m_bExpanded)
            continue;
        if (FillsItsPlot(m_Context, *group)) {
            m_Context.GetPainter().SetPen(m_Context.GetColors().background);
            m_Context.GetPainter().Bar(PlotRect(m_Context, *group));
        }
        m_Columns = ColumnsOf(clip & m_Context.GetArea().GetContents());
        if (m_Columns.empty())
            continue;
        if (m_Events)
            m_Events->SetColumns(m_Columns);
        if (group->m_bSeparateSets)
            DrawSeparateRows(*group);
        else
            DrawSharedPlot(*group);
    }
    m_Context.GetPainter().SetClip(m_Clip);
}

// Not for a strip of some columns, nor for so many signals that it would take much memory.
void CGroupDrawing::BeginEvents() {
    constexpr int64_t kMostColumns = 1 << 20; // of all signals
    const PixelRect& client = m_Context.GetClient();
    int columns = 0;
    for (const ColumnRange& range : ColumnsOf(m_Clip & m_Context.GetArea().GetContents()))
        columns += range.right - range.left;
    if (columns < client.GetWidth() / 2)
        return;
    std::vector<PlacedSet> sets;
    for (const auto& group : m_Context.GetData().GetGroups()) {
        if (!group->IsDisplayedAsGraph() || !group->m_bExpanded || group->m_nTop >= client.bottom)
            continue;
        for (const CGraphDataSet* set : group->m_Sets) {
            if (!IsDrawn(*set))
                continue;
            sets.push_back({set, 0});
            if (const auto behind = FindBehind(*set))
                sets.push_back({behind->set, m_Context.GetOptions().shift});
        }
    }
    if (std::ssize(sets) * client.GetWidth() <= kMostColumns)
        m_Events->BeginSumsOf(sets);
}

void CGroupDrawing::DrawHeader(const CGraphDataGroup& group) {
    CPixelPainter& painter = m_Context.GetPainter();
    const ColorScheme& colors = m_Context.GetColors();
    const PixelRect band = BandRect(m_Context, group);
    const auto left = static_cast<float>(m_Context.GetClient().left);
    m_Canvas.SetMapping(
        band, {left, 0.0F, static_cast<float>(band.GetWidth()), static_cast<float>(band.GetHeight())});
    painter.SetPen(colors.boxPen);
    painter.SetBrush(colors.boxBrush);
    m_Canvas.Rectangle(1, 1, 10, 10);
    m_Canvas.MoveTo(3, 5);
    m_Canvas.LineTo(8, 5);
    if (!group.m_bExpanded) {
        m_Canvas.MoveTo(5, 3);
        m_Canvas.LineTo(5, 8);
    }
    const auto nameWidth = static_cast<float>(painter.GetTextWidth(group.m_strName));
    if (group.m_bSelected) {
        painter.SetPen(colors.underline);
        m_Canvas.MoveTo(11, 10);
        m_Canvas.LineTo(nameWidth + 14, 10);
    }
    painter.SetTextColor(colors.headerText);
    m_Canvas.TextOut(13, -1, group.m_strName);
    m_Canvas.AddScreenRect(GroupNameRect(group.m_strName), 0, 0, 200, 13);
    painter.SetPen(colors.separator);
    for (int i = 1; i <= Metrics::kSeparatorLines; ++i) {
        const auto y = static_cast<float>(group.m_nHeight - i);
        m_Canvas.MoveTo(0, y);
        m_Canvas.LineTo(kFarRight, y);
    }
    m_Canvas.AddScreenRect(kGroupUnderlineRect, 10, 10, nameWidth + 15, 11);
}

void CGroupDrawing::DrawSharedPlot(const CGraphDataGroup& group) {
    const PixelRect plot = PlotRect(m_Context, group);
    MinMax range{std::numeric_limits<float>::max(), -std::numeric_limits<float>::max()};
    for (const CGraphDataSet* set : group.m_Sets) {
        if (IsDrawn(*set) && !set->IsIgnoredForVerticalAutoScaling())
            range.Widen(GetVisibleRange(*set, plot));
    }
    range = WithHeight(range);
    const float top = group.m_bInverted ? range.min : range.max;
    const float bottom = group.m_bInverted ? range.max : range.min;
    for (const CGraphDataSet* set : group.m_Sets) {
        if (IsDrawn(*set))
            DrawBehind(*set, plot, top, bottom);
    }
    for (const CGraphDataSet* set : group.m_Sets) {
        if (IsDrawn(*set))
            DrawSet(*set, plot, top, bottom);
    }
}

void CGroupDrawing::DrawSeparateRows(const CGraphDataGroup& group) {
    const PixelRect plot = PlotRect(m_Context, group);
    int space = plot.GetHeight();
    int rows = group.CountSets(DisplayType::Graph);
    int y = plot.top;
    for (const CGraphDataSet* set : group.m_Sets) {
        if (!set->IsDisplayedAsGraph())
            continue;
        const int rowHeight = (group.m_nSetGap + space) / rows;
        const PixelRect row{plot.left, y, plot.right, y + rowHeight - group.m_nSetGap};
        if (set->GetCount() > 0) {
            MinMax range{0.0F, 1.0F};
            if (!set->IsBinary())
                range = WithHeight(GetVisibleRange(*set, row));
            DrawBehind(*set, row, range.max, range.min);
            DrawSet(*set, row, range.max, range.min);
        }
        space -= rowHeight;
        y += rowHeight;
        --rows;
    }
}

void CGroupDrawing::DrawBehind(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom) {
    const auto behind = FindBehind(set);
    if (!behind)
        return;
    const auto toRaw = [&](float value) {
        return set.IsBinary() ? value : static_cast<float>((value - behind->offset) / behind->factor);
    };
    DrawShown({.set = *behind->set,
               .color = m_Context.Dimmed(ToQColor(set.GetColor())),
               .shift = m_Context.GetOptions().shift,
               .endsWithItsData = true},
              plot, toRaw(top), toRaw(bottom));
}

void CGroupDrawing::DrawSet(const CGraphDataSet& set, const PixelRect& plot, float top, float bottom) {
    DrawShown({.set = set, .color = ToQColor(set.GetColor())}, plot, top, bottom);
}

void CGroupDrawing::DrawShown(const ShownSet& shown, const PixelRect& plot, float top, float bottom) {
    const WorldRect& visible = m_Canvas.GetVisible();
    m_Canvas.SetMapping(plot, {visible.x1, top, visible.x2, bottom});
    if (m_Events)
        m_Events->Draw(shown, m_Canvas.GetMapping());
    else
        DrawCurve(m_Canvas, m_Context.GetPainter(), shown, m_Context.GetClient(), m_Columns);
}

MinMax CGroupDrawing::GetVisibleRange(const CGraphDataSet& set, const PixelRect& plot) const {
    MinMax range = GetRangeOfSet(set, plot);
    range.Widen(GetRangeBehind(set, plot));
    return range;
}

MinMax CGroupDrawing::GetRangeOfSet(const CGraphDataSet& set, const PixelRect& plot) const {
    const CMapping mapping(plot, m_Canvas.GetVisible());
    const int from = mapping.PixelToIndex(plot.left);
    const int to = mapping.PixelToIndex(plot.right);
    if (!m_Events)
        return set.GetMinMax(from, to);
    if (set.IsBinary())
        return {0.0F, 1.0F};
    // With the last sample in view, and the values that are finite alone.
    const int last = set.GetCount() - 1;
    const int first = std::clamp(from, 0, last);
    const int64_t end = std::max<int64_t>(m_Events->GetEndOfView(), int64_t{to} + 1);
    return GetFiniteRange(set, first, static_cast<int>(std::clamp<int64_t>(end, first + 1, last + 1)));
}

MinMax CGroupDrawing::GetRangeBehind(const CGraphDataSet& set, const PixelRect& plot) const {
    const auto behind = FindBehind(set);
    if (!behind || set.IsBinary())
        return MinMax::None();
    const CMapping mapping(plot, m_Canvas.GetVisible());
    const auto toIndex = [&](int px) {
        return int64_t{mapping.PixelToIndex(px)} - m_Context.GetOptions().shift;
    };
    const int64_t last = behind->set->GetCount() - 1;
    const int64_t from = std::max<int64_t>(toIndex(plot.left), 0);
    const int64_t to = std::min(toIndex(plot.right), last);
    if (from > to)
        return MinMax::None();
    const MinMax raw = GetFiniteRange(*behind->set, static_cast<int>(from), static_cast<int>(to) + 1);
    if (!raw.HasValue())
        return raw;
    const auto toOwn = [&](float value) {
        return static_cast<float>(value * behind->factor + behind->offset);
    };
    const auto [min, max] = std::minmax({toOwn(raw.min), toOwn(raw.max)});
    return std::isfinite(min) && std::isfinite(max) ? MinMax{min, max} : MinMax::None();
}

std::optional<CGroupDrawing::Behind> CGroupDrawing::FindBehind(const CGraphDataSet& set) const {
    const auto& signals = m_Context.GetOptions().behind;
    const auto found = signals.find(&set);
    if (found == signals.end() || found->second->GetCount() == 0)
        return std::nullopt;
    const CGraphDataSet& other = *found->second;
    if (other.GetUnitFactor() == set.GetUnitFactor() && other.GetUnitOffset() == set.GetUnitOffset())
        return Behind{&other, 1.0, 0.0};
    const double factor = double{other.GetUnitFactor()} / set.GetUnitFactor();
    const double offset = other.GetUnitOffset() * factor - set.GetUnitOffset();
    const bool isUsable = std::isfinite(factor) && factor != 0.0 && std::isfinite(offset);
    return isUsable ? std::optional(Behind{&other, factor, offset}) : std::nullopt;
}

} // namespace Tracelyn
