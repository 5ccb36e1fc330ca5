#include "RenderTesting.h"
#include "render/FileJustOpened.h"

#include <gtest/gtest.h>

using namespace Tracelyn;

namespace {

struct Loaded : GraphWithData {
    explicit Loaded(int count = 1001, QSize size = {500, 200}) : window(graph, size) {
        AddIndex();
        AddSignal(AddGroup(QStringLiteral("One")), count, [](int i) { return i; });
        AddSignal(AddGroup(QStringLiteral("Two")), count, [](int i) { return -i; });
        graph.SetResetPending();
        window.PaintAll();
        Forget();
    }
    void Forget() {
        window.areas.clear();
        window.painted.clear();
        window.wholeInvalidations = 0;
    }

    RecordingWindow window;
};

} // namespace

TEST(Reset, ShowsTheWholeRangeWithTheCursorInTheMiddle) {
    Loaded data;
    EXPECT_EQ(data.graph.GetCanvas().GetFull(), (WorldRect{0, 0, 1000, 200}));
    EXPECT_EQ(data.graph.GetCursorPosition(), 500);
    EXPECT_TRUE(data.graph.GetData().FindGroup(QStringLiteral("One"))->m_bSelected);
    EXPECT_EQ(data.window.scrollBar, (ScrollBarState{1, 99, 100, 0})) << "set before the range is";
    data.window.PaintAll();
    EXPECT_EQ(data.window.scrollBar, (ScrollBarState{1, 999, 1000, 0}));
}

TEST(Cursor, StaysWithinTheData) {
    Loaded data;
    struct Case {
        int to, result;
    };
    for (const auto& [to, result] : {Case{300, 300}, {-1, 0}, {-10, 0}, {1010, 1000}, {INT32_MAX, 1000}}) {
        data.graph.SetCursorPosition(data.window, to);
        EXPECT_EQ(data.graph.GetCursorPosition(), result) << to;
    }
    data.Forget();
    data.graph.SetCursorPosition(data.window, 5000);
    EXPECT_TRUE(data.window.areas.empty()) << "already there";

    CGraph empty;
    RecordingWindow window(empty, {100, 100});
    window.PaintAll();
    empty.SetCursorPosition(window, 7);
    EXPECT_EQ(empty.GetCursorPosition(), 0);
}

TEST(Cursor, RepaintsTwoStripsAndTheValueCells) {
    Loaded data;
    TakeFileJustOpened();
    data.graph.SetCursorPosition(data.window, 510);
    EXPECT_EQ(data.window.wholeInvalidations, 0);
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    EXPECT_EQ(cells.size(), 3U);
    QRegion expected = QRegion(250, 0, 1, 200) + QRegion(255, 0, 1, 200);
    for (const SCREENRECT& cell : cells)
        expected += PixelRect{cell.left, cell.top, cell.right, cell.bottom}.ToQRect();
    EXPECT_EQ(data.window.painted, std::vector{expected}) << "all in one frame";
}

TEST(Cursor, NearTheConsoleMovesItAside) {
    Loaded data;
    data.graph.SetCursorPosition(data.window, 668);
    EXPECT_FALSE(data.graph.IsConsoleOnLeft()) << "two thirds of 500 pixels, not beyond";
    EXPECT_EQ(data.window.wholeInvalidations, 0);
    data.graph.SetCursorPosition(data.window, 670);
    EXPECT_TRUE(data.graph.IsConsoleOnLeft());
    EXPECT_EQ(data.window.wholeInvalidations, 1);
    data.graph.SetCursorPosition(data.window, 332);
    EXPECT_TRUE(data.graph.IsConsoleOnLeft());
    data.graph.SetCursorPosition(data.window, 330);
    EXPECT_FALSE(data.graph.IsConsoleOnLeft());
}

TEST(FixedCursor, IsClampedStoredAndRepainted) {
    Loaded data;
    struct Case {
        int to, result;
    };
    for (const auto& [to, result] : {Case{400, 400}, {2000, 1000}, {0, 0}, {-1, -1}, {-9, -1}}) {
        data.graph.SetFixedCursor(data.window, to);
        EXPECT_EQ(data.graph.GetFixedCursor(), result);
    }
    data.graph.SetFixedCursor(data.window, 100);
    data.Forget();
    data.graph.SetFixedCursor(data.window, 200);
    ASSERT_GE(data.window.areas.size(), 2U);
    EXPECT_EQ(data.window.areas[0], (PixelRect{50, 0, 51, 200}));
    EXPECT_EQ(data.window.areas[1], (PixelRect{100, 0, 101, 200}));
    EXPECT_TRUE(data.window.painted.empty()) << "no immediate update";
}

TEST(Scrolling, FollowsEachCode) {
    struct Case {
        ScrollCode code;
        uint32_t position;
        float from, to;
    };
    // Zoomed to 400 ... 600 of 0 ... 1000.
    for (const Case& c :
         {Case{ScrollCode::LineLeft, 0, 380, 580}, Case{ScrollCode::LineRight, 0, 420, 620},
          Case{ScrollCode::PageLeft, 0, 300, 500}, Case{ScrollCode::PageRight, 0, 500, 700},
          Case{ScrollCode::ThumbPosition, 123, 123, 323}, Case{ScrollCode::ThumbTrack, 990, 800, 1000},
          Case{ScrollCode::ThumbTrack, 0xFFFFFFFF, 800, 1000}, Case{ScrollCode::LeftEnd, 0, 0, 400},
          Case{ScrollCode::RightEnd, 0, 800, -400}, Case{static_cast<ScrollCode>(8), 5, 400, 600}}) {
        Loaded data;
        data.graph.Zoom(data.window, 5.0F);
        data.Forget();
        data.graph.OnHScroll(data.window, c.code, c.position);
        const WorldRect& visible = data.graph.GetCanvas().GetVisible();
        EXPECT_EQ(visible.x1, c.from) << static_cast<int>(c.code);
        EXPECT_EQ(visible.x2, c.to) << static_cast<int>(c.code);
        EXPECT_EQ(data.window.wholeInvalidations, c.from == 400 && c.to == 600 ? 0 : 1);
        if (data.window.wholeInvalidations > 0) {
            EXPECT_EQ(data.window.scrollBar.position, static_cast<int>(visible.x1));
        }
        data.window.PaintAll();
    }
}
