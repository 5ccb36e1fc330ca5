#include "render/CurveDrawing.h"

#include "model/GraphDataSet.h"
#include "render/Canvas.h"
#include "render/GraphDrawingContext.h"
#include "render/PixelPainter.h"

#include <QRegion>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

namespace Tracelyn {

namespace {

constexpr int kOverlap = 2;
constexpr int kMinimumSpan = 5;
constexpr int kLargestIndex = std::numeric_limits<int>::max();

// The samples a frame looks at: from, from + step, ... below `last`, and `last` itself at the end. For a
// range of columns the walk starts at a later one of them and may stop behind `until`, when it has left the
// range.
struct SampleWalk {
    int64_t from;
    int64_t until;
    int64_t last;
    int step;
};

// Nothing when the set has no samples there.
std::optional<SampleWalk> WalkFor(const CMapping& mapping, const PixelRect& client,
                                  const ColumnRange& columns, const ShownSet& shown) {
    const int step = mapping.GetSamplesPerPixel();
    int64_t first =
        std::clamp<int64_t>(mapping.PixelToIndex(client.left - kOverlap), 0, kLargestIndex - kMinimumSpan);
    int64_t last = std::max<int64_t>(mapping.PixelToIndex(client.right + kOverlap), first + kMinimumSpan);
    if (shown.endsWithItsData) {
        first = std::max<int64_t>(first, shown.shift);
        last = std::min(last, int64_t{shown.shift} + shown.set.GetCount() - 1);
        if (first >= last)
            return std::nullopt;
    }
    const int64_t firstNeeded = mapping.PixelToIndex(columns.left - kOverlap);
    const int64_t lastNeeded = mapping.PixelToIndex(columns.right + kOverlap);
    const int64_t skipped = std::max<int64_t>(0, (firstNeeded - first) / step - 1);
    return SampleWalk{first + std::min(skipped, (last - 1 - first) / step) * step, lastNeeded + step, last,
                      step};
}

int IndexInSet(const ShownSet& shown, int64_t index) {
    return static_cast<int>(std::min<int64_t>(index - shown.shift, kLargestIndex));
}

// Reads the samples of a walk some at a time.
class CSampleCursor {
public:
    CSampleCursor(const ShownSet& shown, const SampleWalk& walk)
        : m_Shown(shown), m_Walk(walk), m_nIndex(walk.from) {}

    int64_t GetIndex() const { return m_nIndex; }
    // More samples before the last one.
    bool HasMore() const { return m_nIndex < m_Walk.last; }
    bool IsPastNeeded() const { return m_nIndex > m_Walk.until; }
    double Take() {
        if (m_nUsed == m_nFilled)
            Refill();
        m_nIndex += m_Walk.step;
        return m_Values[m_nUsed++];
    }

private:
    void Refill() {
        const int64_t left =
            (std::min(m_Walk.last, m_Walk.until + int64_t{2} * m_Walk.step) - m_nIndex) / m_Walk.step + 1;
        m_nFilled = static_cast<size_t>(std::clamp<int64_t>(left, 1, static_cast<int64_t>(m_Values.size())));
        m_nUsed = 0;
        m_Shown.set.GetValues(IndexInSet(m_Shown, m_nIndex), m_Walk.step,
                              std::span(m_Values).first(m_nFilled));
    }

    const ShownSet& m_Shown;
    SampleWalk m_Walk;
    int64_t m_nIndex;
    std::array<double, 256> m_Values;
    size_t m_nFilled = 0;
    size_t m_nUsed = 0;
};

float World(int64_t index) {
    return static_cast<float>(index);
}

// Runs of equal values become one horizontal line, every change one sloped line.
void DrawLine(CCanvas& canvas, const ShownSet& shown, const SampleWalk& walk) {
    CSampleCursor samples(shown, walk);
    int64_t index = samples.GetIndex();
    double previous = samples.Take();
    canvas.MoveTo(World(index), static_cast<float>(previous));
    while (samples.HasMore()) {
        const int64_t before = index;
        index = samples.GetIndex();
        const double value = samples.Take();
        if (value != previous) {
            canvas.LineTo(World(before), static_cast<float>(previous));
            canvas.LineTo(World(index), static_cast<float>(value));
            previous = value;
        }
        if (samples.IsPastNeeded()) {
            canvas.LineTo(World(index), static_cast<float>(previous));
            return;
        }
    }
    canvas.LineTo(World(index), static_cast<float>(previous));
    canvas.LineTo(World(walk.last),
                  static_cast<float>(shown.set.GetValue(IndexInSet(shown, walk.last), kNoReference)));
}

// A mid line over the whole range, and a filled box wherever the signal is on.
void DrawLane(CCanvas& canvas, const ShownSet& shown, const SampleWalk& walk) {
    canvas.MoveTo(World(walk.from), 0.5F);
    canvas.LineTo(World(walk.last), 0.5F);
    CSampleCursor samples(shown, walk);
    const int64_t half = walk.step / 2;
    const auto isOn = [](double value) { return value >= 0.5; };
    std::optional<int64_t> onSince;
    int64_t index = samples.GetIndex();
    if (isOn(samples.Take()))
        onSince = index;
    while (samples.HasMore() && !samples.IsPastNeeded()) {
        index = samples.GetIndex();
        const bool on = isOn(samples.Take());
        if (!on && onSince) {
            canvas.Rectangle(World(*onSince), 0.0F, World(index - half), 1.0F);
            onSince.reset();
        } else if (on && !onSince) {
            onSince = std::max(walk.from, index - half);
        }
    }
    // Behind the last sample that was looked at the signal may be off.
    const int64_t end = samples.HasMore() ? index : walk.last;
    if (onSince)
        canvas.Rectangle(World(*onSince), 0.0F, World(end), 1.0F);
}

} // namespace

std::vector<ColumnRange> ColumnsOf(const QRegion& region) {
    std::vector<ColumnRange> ranges;
    for (const QRect& rect : region)
        ranges.push_back({rect.x(), rect.x() + rect.width()});
    std::ranges::sort(ranges, {}, &ColumnRange::left);
    std::vector<ColumnRange> joined;
    for (const ColumnRange& range : ranges) {
        // Walks that overlap would draw the samples between them twice.
        if (!joined.empty() && range.left <= joined.back().right + 2 * kOverlap)
            joined.back().right = std::max(joined.back().right, range.right);
        else
            joined.push_back(range);
    }
    return joined;
}

void DrawCurve(CCanvas& canvas, CPixelPainter& painter, const ShownSet& shown, const PixelRect& client,
               std::span<const ColumnRange> columns) {
    painter.SetPen(shown.color);
    painter.SetBrush(shown.color);
    for (const ColumnRange& range : columns) {
        const auto walk = WalkFor(canvas.GetMapping(), client, range, shown);
        if (!walk)
            continue;
        if (shown.set.IsBinary())
            DrawLane(canvas, shown, *walk);
        else
            DrawLine(canvas, shown, *walk);
    }
}

} // namespace Tracelyn
