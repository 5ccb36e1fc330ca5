// A partial repaint must leave the pixels that a full one gives.
#include "RenderTesting.h"
#include "render/FileJustOpened.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace Tracelyn;

namespace {

struct Busy : GraphWithData {
    explicit Busy(int count) {
        AddIndex();
        CGraphDataGroup& curves = AddGroup(QStringLiteral("Curves"));
        AddSignal(
            curves, count, [=](int i) { return std::sin(i * 40.0 / count) * 100; }, 0x00FF00,
            QStringLiteral("Sine"));
        AddSignal(
            curves, count, [](int i) { return (i * 7919) % 100; }, 0x0000FF, QStringLiteral("Noise"));
        AddSignal(
            curves, count, [](int i) { return i % 50 < 25 ? 10.0 : 80.0; }, 0xFF0000, QStringLiteral("Step"));
        // Wider than its column at every other sample.
        const auto wide = [](int i) { return i % 2 == 0 ? 5.0 : 123456789.0; };
        AddSignal(curves, count, wide, 0xFFFF00, QStringLiteral("Wide")).SetDisplayType(DisplayType::Console);
        CGraphDataGroup& lanes = AddGroup(QStringLiteral("Lanes"));
        lanes.m_bSeparateSets = true;
        AddBit(
            lanes, count, [](int i) { return i % 13 < 5; }, 0x00AAAA,
            QStringLiteral("A bit's name beyond the box"));
        AddBit(
            lanes, count, [](int i) { return i % 301 < 150; }, 0xAAAA00,
            QStringLiteral("Second bit, also long"));
        AddGroup(QStringLiteral("Closed")).m_bExpanded = false;
        graph.SetResetPending();
    }
};

void ExpectSameAsFull(CGraph& graph, const RecordingWindow& window, QSize size, double scale,
                      const char* what) {
    RecordingWindow full(graph, size, scale);
    full.PaintAll();
    const QImage& partial = window.GetImage();
    for (int y = 0; y < partial.height(); ++y) {
        for (int x = 0; x < partial.width(); ++x)
            ASSERT_EQ(partial.pixel(x, y), full.GetImage().pixel(x, y)) << what << " at " << x << ',' << y;
    }
}

} // namespace

TEST(PartialRepaint, EqualsAFullOneAfterCursorSteps) {
    const QSize size(640, 300);
    for (const double scale : {1.0, 2.0}) {
        for (const int count : {40, 640, 3000, 20000}) {
            for (const float zoom : {1.0F, 3.0F, 40.0F}) {
                SCOPED_TRACE(testing::Message() << count << " samples, zoom " << zoom << ", scale " << scale);
                Busy data(count);
                RecordingWindow window(data.graph, size, scale);
                window.PaintAll();
                data.graph.Zoom(window, zoom);
                window.PaintAll();
                for (const int step : {1, 1, -3, 10, -1, 2, 25, -40, 7}) {
                    data.graph.SetCursorPosition(window, data.graph.GetCursorPosition() + step);
                    window.PaintInvalid();
                }
                ExpectSameAsFull(data.graph, window, size, scale, "after steps");
                data.graph.SetFixedCursor(window, data.graph.GetCursorPosition() - 2);
                window.PaintInvalid();
                data.graph.SetCursorPosition(window, data.graph.GetCursorPosition() + 1);
                window.PaintInvalid();
                data.graph.SelectNextGroup(window);
                window.PaintInvalid();
                ExpectSameAsFull(data.graph, window, size, scale, "after fixed cursor and selection");
            }
        }
    }
}

// A cell may reach out of the console: the long name of the second bit does.
TEST(PartialRepaint, AfterAFileWasOpenedDrawsThePlotsOnceInTheValueCells) {
    Busy data(2000);
    RecordingWindow window(data.graph, {640, 300});
    data.graph.ToggleConsoleSide(window);
    window.PaintAll();
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    const SCREENRECT longest = *std::ranges::max_element(cells, {}, &SCREENRECT::right);
    const QRect cell(longest.left, longest.top, longest.right - longest.left, longest.bottom - longest.top);

    const auto isCellRightAfterStepTo = [&](int index) {
        window.Spoil();
        data.graph.SetCursorPosition(window, index);
        RecordingWindow full(data.graph, {640, 300});
        full.PaintAll();
        return window.GetImage().copy(cell) == full.GetImage().copy(cell);
    };
    SetFileJustOpened(true);
    EXPECT_TRUE(isCellRightAfterStepTo(1010));
    EXPECT_FALSE(TakeFileJustOpened());
    EXPECT_FALSE(isCellRightAfterStepTo(1011)) << "the plot beside the console was drawn for nothing";
}

// Far apart strips: what lies between them costs nothing.
TEST(PartialRepaint, OfALongJumpLooksAtTheTwoStripsOnly) {
    Busy data(20000);
    RecordingWindow window(data.graph, {640, 300});
    window.PaintAll();
    const int all = data.graph.GetCanvas().GetLineCount();
    data.graph.SetCursorPosition(window, 9900);
    const int step = data.graph.GetCanvas().GetLineCount();
    data.graph.SetCursorPosition(window, 1000);
    EXPECT_LT(data.graph.GetCanvas().GetLineCount(), 2 * step);
    EXPECT_LT(4 * step, all);
    ExpectSameAsFull(data.graph, window, {640, 300}, 1.0, "after the jump");
}
