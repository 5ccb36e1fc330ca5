// Cursors, zoom and scrolling, and what each repaints.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/Graph.h"

namespace {

// Two bands of 1001 samples in 500 pixels.
struct Navigation : ::testing::Test, GraphWithData {
    Navigation() {
        AddIndex();
        AddSignal(AddGroup("One"), 1001, [](int i) { return i; });
        AddSignal(AddGroup("Two"), 1001, [](int i) { return -i; });
        Reset();
    }
    void Reset() {
        graph.SetResetPending();
        window.PaintAll();
        Forget();
    }
    void Forget() {
        window.areas.clear();
        window.painted.clear();
        window.wholeInvalidations = 0;
    }

    RecordingWindow window{graph, {500, 200}};
};

// Claims as many samples as a recording can have, which no test could hold.
struct LongestSet : CGraphDataSet {
    LongestSet(CGraphData& root, const QString& name) : CGraphDataSet(root, name) {}
    double GetValue(int /*index*/, int /*refIndex*/) const override { return 0.0; }
    double GetScaledValue(int index, int refIndex) const override { return GetValue(index, refIndex); }
    bool IsBinary() const override { return false; }
    int GetCount() const override { return INT32_MAX; }
    MinMax Scan(int /*from*/, int /*to*/) const override { return {0.0F, 1.0F}; }
};

} // namespace

TEST_F(Navigation, StartsWithTheWholeRangeAndTheCursorInTheMiddle) {
    EXPECT_EQ(graph.GetCanvas().GetFull(), (WorldRect{0, 0, 1000, 200}));
    EXPECT_EQ(graph.GetCursorPosition(), 500);
    EXPECT_TRUE(graph.GetData().FindGroup("One")->m_bSelected);
    EXPECT_EQ(window.scrollBar, (ScrollBarState{1, 99, 100, 0})) << "set before the range is";
    window.PaintAll();
    EXPECT_EQ(window.scrollBar, (ScrollBarState{1, 999, 1000, 0}));
}

TEST_F(Navigation, ToWhereTheCursorIsRepaintsNothing) {
    graph.SetCursorPosition(window, 5000);
    EXPECT_EQ(graph.GetCursorPosition(), 1000);
    Forget();
    graph.SetCursorPosition(window, 5000);
    EXPECT_TRUE(window.areas.empty());

    CGraph empty;
    RecordingWindow other(empty, {100, 100});
    other.PaintAll();
    empty.SetCursorPosition(other, 7);
    EXPECT_EQ(empty.GetCursorPosition(), 0);
}

TEST_F(Navigation, OfTheCursorRepaintsTwoStripsAndTheValueCells) {
    TakeFileJustOpened();
    graph.SetCursorPosition(window, 510);
    EXPECT_EQ(window.wholeInvalidations, 0);
    std::vector<SCREENRECT> cells;
    graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    EXPECT_EQ(cells.size(), 3U);
    QRegion expected = QRegion(250, 0, 1, 200) + QRegion(255, 0, 1, 200);
    for (const SCREENRECT& cell : cells)
        expected += PixelRect{cell.left, cell.top, cell.right, cell.bottom}.ToQRect();
    EXPECT_EQ(window.painted, std::vector{expected}) << "all in one frame";
}

TEST_F(Navigation, NearTheConsoleMovesItAside) {
    using Case = std::pair<int, bool>; // left of two thirds of 500 pixels, beyond, and the same at one third
    for (const auto& [to, left] : {Case{668, false}, Case{670, true}, Case{332, true}, Case{330, false}}) {
        const bool before = graph.IsConsoleOnLeft();
        Forget();
        graph.SetCursorPosition(window, to);
        EXPECT_EQ(graph.IsConsoleOnLeft(), left) << to;
        EXPECT_EQ(window.wholeInvalidations, left == before ? 0 : 1) << to;
    }
}

TEST_F(Navigation, ClampsStoresAndRepaintsTheFixedCursor) {
    for (const auto& [to, result] : {std::pair{400, 400}, {2000, 1000}, {0, 0}, {-1, -1}, {-9, -1}}) {
        graph.SetFixedCursor(window, to);
        EXPECT_EQ(graph.GetFixedCursor(), result);
    }
    graph.SetFixedCursor(window, 100);
    Forget();
    graph.SetFixedCursor(window, 200);
    ASSERT_GE(window.areas.size(), 2U);
    EXPECT_EQ(window.areas[0], (PixelRect{50, 0, 51, 200}));
    EXPECT_EQ(window.areas[1], (PixelRect{100, 0, 101, 200}));
    EXPECT_TRUE(window.painted.empty()) << "no immediate update";
}

TEST_F(Navigation, ScrollsAsEachCodeSays) {
    // Zoomed to 400 ... 600 of 0 ... 1000.
    using Case = std::tuple<ScrollCode, uint32_t, float, float>;
    for (const auto& [code, position, from, to] :
         {Case{ScrollCode::LineLeft, 0, 380, 580}, Case{ScrollCode::LineRight, 0, 420, 620},
          Case{ScrollCode::PageLeft, 0, 300, 500}, Case{ScrollCode::PageRight, 0, 500, 700},
          Case{ScrollCode::ThumbPosition, 123, 123, 323}, Case{ScrollCode::ThumbTrack, 990, 800, 1000},
          Case{ScrollCode::ThumbTrack, 0xFFFFFFFF, 800, 1000}, Case{ScrollCode::LeftEnd, 0, 0, 400},
          Case{ScrollCode::RightEnd, 0, 800, -400}, Case{static_cast<ScrollCode>(8), 5, 400, 600}}) {
        Reset();
        graph.Zoom(window, 5.0F);
        Forget();
        graph.OnHScroll(window, code, position);
        const WorldRect& visible = graph.GetCanvas().GetVisible();
        EXPECT_EQ(std::pair(visible.x1, visible.x2), std::pair(from, to)) << static_cast<int>(code);
        EXPECT_EQ(window.wholeInvalidations, from == 400 && to == 600 ? 0 : 1);
        EXPECT_TRUE(window.wholeInvalidations == 0 ||
                    window.scrollBar.position == static_cast<int>(visible.x1));
        window.PaintAll();
    }
}

TEST(LongestRecording, IsScrolledAndSteppedThroughToItsEnd) {
    GraphWithData data;
    CGraphDataGroup& group = data.AddGroup("g", DisplayType::Graph);
    group.AddSet(&GraphWithData::Green(data.graph.GetData().Make<LongestSet>("s")));
    data.graph.SetResetPending();
    RecordingWindow window(data.graph, {500, 200});
    window.PaintAll();
    window.PaintAll();
    EXPECT_EQ(window.scrollBar, (ScrollBarState{1, INT32_MAX - 1, INT32_MAX, 0}));

    data.graph.SetCursorPosition(window, INT32_MAX - 7);
    data.graph.MoveCursor(window, 10);
    EXPECT_EQ(data.graph.GetCursorPosition(), INT32_MAX - 1);
    data.graph.MoveCursor(window, -10);
    EXPECT_EQ(data.graph.GetCursorPosition(), INT32_MAX - 11);
}

TEST(Click, OnAValueTogglesNoGroupThatIsNamedLikeOne) {
    GraphWithData data;
    CGraphDataGroup& group = data.AddGroup("#Value#");
    data.AddSignal(group, 100, [](int i) { return i; });
    RecordingWindow window(data.graph, {500, 200});
    window.PaintAll();
    const SCREENRECT value = *data.graph.GetCanvas().FindScreenRect(kValueRect);
    data.graph.ToggleGroupAt(window, kLeftButton, value.left, value.top);
    EXPECT_TRUE(group.m_bExpanded);
    data.graph.ToggleGroupAt(window, kLeftButton, 20, 5);
    EXPECT_FALSE(group.m_bExpanded);
}
