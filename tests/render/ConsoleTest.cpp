#include "RenderTesting.h"
#include "render/GraphDrawingContext.h"

#include <gtest/gtest.h>

#include <QFontMetrics>

using namespace Tracelyn;

namespace {

constexpr QSize kSize(600, 300);

// The pixels of a color inside a rectangle.
int CountPixels(const RecordingWindow& window, const QRect& rect, const QColor& color) {
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            count += window.At(x, y) == color ? 1 : 0;
    }
    return count;
}

struct ConsoleData : GraphWithData {
    ConsoleData() {
        AddIndex();
        CGraphDataGroup& group = AddGroup(QStringLiteral("Group"));
        AddSignal(
            group, 100, [](int i) { return i / 2.0; }, 0x0000FF, QStringLiteral("S"))
            .SetPrecision(3);
        AddBit(
            group, 100, [](int i) { return i >= 50; }, 0x00FF00, QStringLiteral("B1"));
        AddBit(
            group, 100, [](int) { return false; }, 0xFF0000, QStringLiteral("B2"));
        graph.SetResetPending();
    }
};

} // namespace

TEST(Console, StandsAtTheChosenEdgeInFrontOfTheBands) {
    for (const bool dark : {true, false}) {
        ConsoleData data;
        RecordingWindow window(data.graph, kSize);
        if (!dark)
            data.graph.ToggleBackground(window);
        window.PaintAll();
        const ColorScheme& colors = dark ? ColorScheme::Dark() : ColorScheme::Light();
        const int right = kSize.width() - 4;
        EXPECT_EQ(window.At(right - 1, 10), colors.consoleFrame);
        EXPECT_EQ(window.At(right - 2, 6), colors.consoleFill);
        EXPECT_EQ(window.At(right, 10), colors.background);
        // The first box has no name row and ends two pixels below its only value; the next begins two below
        // that.
        EXPECT_EQ(window.At(right - 30, 20), colors.consoleFrame);
        EXPECT_GT(CountPixels(window, QRect(right - 150, 20, 140, 12), colors.consoleGroupName), 5);

        data.graph.ToggleConsoleSide(window);
        window.PaintAll();
        EXPECT_EQ(window.At(4, 10), colors.consoleFrame);
        EXPECT_EQ(window.At(right - 2, 100), colors.background);
    }
}

TEST(Console, ShowsValuesRightAlignedWithTheSetsDecimals) {
    ConsoleData data;
    RecordingWindow window(data.graph, kSize);
    window.PaintAll();
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    ASSERT_EQ(cells.size(), 4U);
    const SCREENRECT& value = cells[1];
    const QFontMetrics metrics(CSmallFont::Font());
    // Cursor at 49: " 24.500" ends four pixels before the unit.
    const int width = metrics.horizontalAdvance(QStringLiteral("24.500"));
    const QRect text(value.right - 4 - width, value.top, width, 11);
    EXPECT_GT(CountPixels(window, text, QColor(255, 0, 0)), 10);
    EXPECT_EQ(CountPixels(window, QRect(value.left, value.top, text.left() - 1 - value.left, 11),
                          QColor(255, 0, 0)),
              0);
    EXPECT_EQ(CountPixels(window, QRect(value.right - 4, value.top, 4, 11), QColor(255, 0, 0)), 0);
}

TEST(Console, ShowsASetBitInverted) {
    ConsoleData data;
    RecordingWindow window(data.graph, kSize);
    window.PaintAll();
    data.graph.SetCursorPosition(window, 60);
    window.PaintAll();
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    const auto filled = [&](const SCREENRECT& cell, const QColor& color) {
        return CountPixels(window, QRect(cell.left + 1, cell.top, cell.right - cell.left - 3, 13), color);
    };
    EXPECT_GT(filled(cells[2], QColor(0, 255, 0)), 100);
    const int plain = filled(cells[3], QColor(0, 0, 255));
    EXPECT_GT(plain, 5);
    EXPECT_LT(plain, 60);
}

TEST(Console, TakesMixedRowsOneAfterTheOther) {
    GraphWithData data;
    CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
    const auto bit = [](int) { return true; };
    const auto signal = [](int) { return 1.0; };
    data.AddBit(group, 10, bit);
    data.AddSignal(group, 10, signal);
    data.AddBit(group, 10, bit);
    data.AddBit(group, 10, bit);
    data.AddBit(group, 10, bit);
    data.graph.SetResetPending();
    RecordingWindow window(data.graph, kSize);
    window.PaintAll();
    std::vector<SCREENRECT> cells;
    data.graph.GetCanvas().CollectScreenRects(kValueRect, cells);
    std::vector<int> tops;
    for (const SCREENRECT& cell : cells)
        tops.push_back(cell.top);
    EXPECT_EQ(tops, (std::vector{5, 17, 29, 29, 41}));
    EXPECT_GT(cells[3].left, cells[2].right);
}
