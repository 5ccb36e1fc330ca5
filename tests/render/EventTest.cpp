// Every event in view is drawn: curves and lanes compared with a plain loop over the samples of each column.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/GraphDrawingContext.h"

namespace {

const QColor kGreen(0, 255, 0);

// One band with one signal, drawn with every event and without a console.
struct Events : GraphWithData {
    explicit Events(QSize size) : window(graph, size) { graph.ShowEveryEvent(window, true); }

    void Paint() {
        graph.SetResetPending();
        window.PaintAll();
        graph.SetCursorPosition(window, 0);
        window.PaintAll();
    }
    int Column(int index) const {
        return graph.GetCanvas().GetTimeAxis().WorldToPixelX(static_cast<float>(index));
    }
    // The samples in view that fall on the column; the one on the right edge belongs to the last column.
    std::vector<int> SamplesOf(int column, int count) const {
        const CMapping axis = graph.GetCanvas().GetTimeAxis();
        const int width = window.GetClientRect().right;
        std::vector<int> samples;
        for (int i = std::max(0, axis.PixelToIndex(0)); i < count; ++i) {
            const bool isOnEdge = i <= axis.PixelToWorldX(width) && Column(i) >= width;
            if ((isOnEdge ? width - 1 : Column(i)) == column)
                samples.push_back(i);
        }
        return samples;
    }

    CGraphDataGroup& group = AddGroup("Band", DisplayType::Graph);
    RecordingWindow window;
};

// The rows from the first to the last of the values, whatever is between them; none without a finite value.
std::pair<int, int> RowsOf(const std::vector<float>& values, const CMapping& mapping) {
    std::pair rows{INT_MAX, INT_MIN};
    for (const float value : values) {
        if (!std::isfinite(value))
            continue;
        const int row = mapping.WorldToPixelY(value);
        rows = {std::min(rows.first, row), std::max(rows.second, row)};
    }
    return rows;
}

void ExpectColumnsAsPlain(const Events& data, const std::vector<float>& values) {
    const CMapping axis = data.graph.GetCanvas().GetTimeAxis();
    const int width = data.window.GetClientRect().right;
    const auto count = static_cast<int>(values.size());
    const PixelRect plot{0, data.group.m_nTop + data.group.m_nTopMargin, width,
                         data.group.m_nTop + data.group.m_nHeight - 7};
    MinMax scale = MinMax::None();
    for (int i = std::max(0, axis.PixelToIndex(0)); i <= std::min(axis.PixelToIndex(width), count - 1); ++i) {
        if (std::isfinite(values[static_cast<size_t>(i)]))
            scale.Widen(values[static_cast<size_t>(i)]);
    }
    if (scale.min == scale.max)
        scale.max += 1;
    const WorldRect& visible = data.graph.GetCanvas().GetVisible();
    const CMapping mapping(plot, {visible.x1, scale.max, visible.x2, scale.min});
    for (int x = data.Column(0) == 0 ? 1 : 0; x < width; ++x) { // the cursor is at sample 0
        std::vector<float> own;
        const std::vector<int> samples = data.SamplesOf(x, count);
        for (const int i : samples)
            own.push_back(values[static_cast<size_t>(i)]);
        const auto drawn = data.window.Rows(x, kGreen, plot.top, plot.bottom + 1);
        const auto [top, bottom] = RowsOf(own, mapping);
        for (int row = top; row <= bottom; ++row)
            ASSERT_TRUE(std::ranges::binary_search(drawn, row)) << "column " << x << " lacks row " << row;
        if (samples.empty() || drawn.empty())
            continue;
        // Nothing beyond the lines to the neighbours.
        own.push_back(values[static_cast<size_t>(std::max(samples.front() - 1, 0))]);
        own.push_back(values[static_cast<size_t>(std::min(samples.back() + 1, count - 1))]);
        const auto [highest, lowest] = RowsOf(own, mapping);
        ASSERT_GE(drawn.front(), highest) << "column " << x;
        ASSERT_LE(drawn.back(), lowest) << "column " << x;
    }
}

} // namespace

TEST(EveryEvent, InACurveIsDrawnAsAPlainLoopOverAllSamplesFindsIt) {
    std::mt19937 random(15);
    for (const int count : {2, 3, 60, 400, 3000, 20'000}) {
        for (const int width : {1, 90, 333}) {
            std::vector<float> values(static_cast<size_t>(count));
            for (float& value : values)
                value = std::array{
                    0.0F, 0.0F,      1.0F,       -3.0F,
                    NAN,  HUGE_VALF, -HUGE_VALF, static_cast<float>(random() % 1000) / 7.0F}[random() % 8];
            Events data(QSize(width, 150));
            data.AddSignal(data.group, count, [&](int i) { return values[static_cast<size_t>(i)]; });
            data.Paint();
            for (const float zoom : {1.0F, 2.7F, 40.0F}) {
                SCOPED_TRACE(testing::Message()
                             << count << " samples, " << width << " columns, zoom " << zoom);
                data.graph.Zoom(data.window, zoom);
                data.graph.OnHScroll(data.window, ScrollCode::ThumbPosition,
                                     static_cast<uint32_t>(random()) % unsigned(count));
                data.window.PaintAll();
                ExpectColumnsAsPlain(data, values);
            }
        }
    }
}

TEST(EveryEvent, OfAnOnOffSignalShowsWhichColumnsAreOnOffOrBoth) {
    std::mt19937 random(16);
    for (const int count : {2, 50, 700, 9000}) {
        std::vector<bool> on(static_cast<size_t>(count));
        for (size_t i = 0; i < on.size();)
            for (size_t run = 1 + random() % 40, state = random() % 2; run > 0 && i < on.size(); --run)
                on[i++] = state != 0;
        Events data(QSize(200, 60));
        data.group.m_bSeparateSets = true;
        data.AddBit(data.group, count, [&](int i) { return on[static_cast<size_t>(i)]; });
        data.Paint();
        const int top = data.group.m_nTop + data.group.m_nTopMargin;
        const int bottom = data.group.m_nTop + data.group.m_nHeight - 3 - data.group.m_nBottomMargin - 1;
        const int middle = top + (bottom - top) / 2;
        bool before = on[0];
        for (int x = 1; x < 200; ++x) {
            int ons = 0;
            const std::vector<int> samples = data.SamplesOf(x, count);
            for (const int i : samples)
                ons += on[static_cast<size_t>(i)] ? 1 : 0;
            const bool isMixed = ons > 0 && ons < std::ssize(samples);
            const bool isOn = samples.empty() ? before : ons > 0;
            before = samples.empty() ? before : on[static_cast<size_t>(samples.back())];
            EXPECT_EQ(data.window.At(x, top) == kGreen, isOn) << x;
            EXPECT_EQ(data.window.At(x, bottom - 1) == kGreen, isOn) << x;
            EXPECT_EQ(data.window.At(x, middle) == kGreen, !isMixed) << x;
        }
    }
}

// Values of bands that ordinary drawing shows as something else, and single samples in long recordings.
TEST(EveryEvent, IsSeenWhereOrdinaryDrawingHidesIt) {
    for (const int count : {2000, 20'000, 1'000'000, 10'000'000}) {
        const auto isEvent = [=](int i) {
            return i == count - 1 || (i % (count / 12) == count / 24 && i / (count / 12) < 11);
        };
        Events data(QSize(1280, 300));
        data.AddSignal(data.group, count, [&](int i) { return isEvent(i) ? 9.0 : i == 40 ? HUGE_VAL : 1.0; });
        CGraphDataGroup& lanes = data.AddGroup("On/off", DisplayType::Graph);
        data.AddBit(lanes, count, [&](int i) { return isEvent(i); });
        CGraphDataGroup& always = data.AddGroup("Always on", DisplayType::Graph);
        data.AddBit(always, count, [](int) { return true; });
        data.Paint();
        int seen = 0;
        for (int i = 0; i < count; ++i) {
            if (!isEvent(i))
                continue;
            const int x = std::min(data.Column(i), 1279);
            const bool isInCurve = data.window.At(x, data.group.m_nTop + data.group.m_nTopMargin) == kGreen;
            seen += isInCurve && data.window.At(x, lanes.m_nTop + lanes.m_nTopMargin) == kGreen ? 1 : 0;
        }
        EXPECT_EQ(seen, 12) << count;
        EXPECT_EQ(data.window.At(640, always.m_nTop + always.m_nTopMargin), kGreen) << "on, not off";
    }
}

// The second recording is drawn where its samples stand, on the scale and in the unit of the first.
TEST(RecordingBehind, StandsDimmedAtItsShiftInTheUnitOfTheFirst) {
    const QColor dimmed(0, 102, 0);
    for (const bool everyEvent : {false, true}) {
        Events data(QSize(500, 100));
        data.graph.ShowEveryEvent(data.window, everyEvent);
        data.AddSignal(data.group, 501, [](int i) { return i < 100 ? 0 : 1000; });
        GraphWithData other;
        CGraphDataGroup& group = other.AddGroup("Band", DisplayType::Graph);
        other.AddSignal(group, 200, [](int i) { return i < 50 ? 0.0 : 5.0; }).SetUnit("", 0.0F, 100.0F, 0);
        data.Paint();
        data.graph.ShowBehind(data.window, &other.graph.GetData(), 120);
        data.window.PaintAll();
        const int top = data.group.m_nTop + data.group.m_nTopMargin;
        const int bottom = data.group.m_nTop + data.group.m_nHeight - 7;
        const auto rows = [&](int x) { return data.window.Rows(x, dimmed); };
        EXPECT_EQ(rows(110), std::vector<int>{}) << "before its samples";
        EXPECT_EQ(rows(150), std::vector{bottom});
        EXPECT_EQ(rows(200), std::vector{top + (bottom - top) / 2}) << "5 x 100 is half of 1000";
        EXPECT_EQ(rows(330), std::vector<int>{}) << "behind its samples";
        data.graph.ShowBehind(data.window, nullptr);
        data.window.PaintAll();
        EXPECT_EQ(data.window.Count(dimmed), 0);
    }
}
