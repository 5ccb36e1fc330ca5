// A partial repaint must leave the pixels that a full one gives.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/Graph.h"

namespace {

constexpr QSize kSize(640, 300);

struct Busy : GraphWithData {
    explicit Busy(int count, double scale = 1.0, bool everyEvent = false)
        : window(graph, kSize, scale), m_nScale(scale) {
        graph.ShowEveryEvent(window, everyEvent);
        AddIndex();
        CGraphDataGroup& curves = AddGroup("Curves");
        CGraphDataSet& sine =
            AddSignal(curves, "Sine", count, [=](int i) { return std::sin(i * 40.0 / count) * 100; });
        sine.SetColor(0x00FF00);
        sine.SetUnit(QStringLiteral("\u0301F"), 0, 1, 2); // The mark lies over the value.
        AddSignal(curves, "Noise", count, [](int i) { return (i * 7919) % 100; }).SetColor(0x0000FF);
        AddSignal(curves, "Step", count, [](int i) { return i % 50 < 25 ? 10.0 : 80.0; }).SetColor(0xFF0000);
        // Wider than its column at every other sample.
        CGraphDataSet& wide =
            AddSignal(curves, "Wide", count, [](int i) { return i % 2 == 0 ? 5.0 : 123456789.0; });
        wide.SetColor(0xFFFF00);
        wide.SetDisplayType(DisplayType::Console);
        CGraphDataGroup& lanes = AddGroup("Lanes");
        lanes.m_bSeparateSets = true;
        AddBit(lanes, "A bit's name beyond the box", count, [](int i) {
            return i % 13 < 5;
        }).SetColor(0x00AAAA);
        AddBit(lanes, "Second bit, also long", count, [](int i) { return i % 301 < 150; }).SetColor(0xAAAA00);
        AddGroup("Closed").m_bExpanded = false;
        graph.SetResetPending();
        window.PaintAll();
    }
    void Step(int by) {
        graph.SetCursorPosition(window, graph.GetCursorPosition() + by);
        window.PaintInvalid();
    }
    QImage Full() {
        RecordingWindow full(graph, kSize, m_nScale);
        full.PaintAll();
        return full.GetImage();
    }

    RecordingWindow window;

private:
    double m_nScale;
};

} // namespace

TEST(PartialRepaint, EqualsAFullOneAfterCursorSteps) {
    for (const double scale : {1.0, 2.0}) {
        for (const int count : {40, 640, 3000, 20000}) {
            for (const auto& [zoom, everyEvent] : {std::pair{1.0F, false},
                                                   {3.0F, false},
                                                   {40.0F, false},
                                                   {1.0F, true},
                                                   {3.0F, true},
                                                   {40.0F, true}}) {
                SCOPED_TRACE(testing::Message() << count << " samples, zoom " << zoom << ", scale " << scale
                                                << ", every event " << everyEvent);
                Busy data(count, scale, everyEvent);
                data.graph.Zoom(data.window, zoom);
                data.window.PaintAll();
                for (const int step : {1, 1, -3, 10, -1, 2, 25, -40, 7})
                    data.Step(step);
                EXPECT_EQ(data.window.GetImage(), data.Full()) << "after steps";
                data.graph.SetFixedCursor(data.window, data.graph.GetCursorPosition() - 2);
                data.window.PaintInvalid();
                data.Step(1);
                data.graph.SelectNextGroup(data.window);
                data.window.PaintInvalid();
                EXPECT_EQ(data.window.GetImage(), data.Full()) << "after fixed cursor and selection";
            }
        }
    }
}

// A cell may reach out of the console: the long name of the second bit does.
TEST(PartialRepaint, AfterAFileWasOpenedDrawsThePlotsOnceInTheValueCells) {
    Busy data(2000);
    data.graph.ToggleConsoleSide(data.window);
    data.window.PaintAll();
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    const SCREENRECT longest = *std::ranges::max_element(cells, {}, &SCREENRECT::right);
    const QRect cell(longest.left, longest.top, longest.right - longest.left, longest.bottom - longest.top);
    const auto isCellRightAfterStepTo = [&](int index) {
        data.window.Spoil();
        data.graph.SetCursorPosition(data.window, index);
        return data.window.GetImage().copy(cell) == data.Full().copy(cell);
    };
    SetFileJustOpened(true);
    EXPECT_TRUE(isCellRightAfterStepTo(1010));
    EXPECT_FALSE(TakeFileJustOpened());
    EXPECT_FALSE(isCellRightAfterStepTo(1011)) << "the plot beside the console was drawn for nothing";
}
