// The console with the values at the cursor.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/GraphDrawingContext.h"

#include <QFontMetrics>

namespace {

struct Console : ::testing::Test, GraphWithData {
    Console() {
        AddIndex();
        CGraphDataGroup& group = AddGroup("Group");
        CGraphDataSet& signal = AddSignal(group, 100, [](int i) { return i / 2.0; });
        signal.SetPrecision(3);
        signal.SetColor(0x0000FF);
        AddBit(group, "B1", 100, [](int i) { return i >= 50; }).SetColor(0x00FF00);
        AddBit(group, "B2", 100, [](int) { return false; }).SetColor(0xFF0000);
        graph.SetResetPending();
        window.PaintAll();
    }
    // The places of the values.
    std::vector<SCREENRECT> Cells() const {
        std::vector<SCREENRECT> cells;
        graph.GetCanvas().CollectScreenRects(kValueRect, cells);
        return cells;
    }

    RecordingWindow window{graph, {600, 300}};
};

} // namespace

TEST_F(Console, StandsAtTheChosenEdgeInFrontOfTheBands) {
    for (const bool dark : {true, false}) {
        const ColorScheme& colors = dark ? ColorScheme::Dark() : ColorScheme::Light();
        const int right = 600 - 4;
        EXPECT_EQ(window.At(right - 1, 10), colors.consoleFrame);
        EXPECT_EQ(window.At(right - 2, 6), colors.consoleFill);
        EXPECT_EQ(window.At(right, 10), colors.background);
        // The first box has no name row and ends two pixels below its only value; the next begins two below
        // that.
        EXPECT_EQ(window.At(right - 30, 20), colors.consoleFrame);
        EXPECT_GT(window.Count({right - 150, 20, 140, 12}, colors.consoleGroupName), 5);

        graph.ToggleConsoleSide(window);
        window.PaintAll();
        EXPECT_EQ(window.At(4, 10), colors.consoleFrame);
        EXPECT_EQ(window.At(right - 2, 100), colors.background);
        graph.ToggleConsoleSide(window);
        graph.ToggleBackground(window);
        window.PaintAll();
    }
}

TEST_F(Console, ShowsValuesRightAlignedWithTheSetsDecimals) {
    ASSERT_EQ(Cells().size(), 4U);
    const SCREENRECT value = Cells()[1];
    const QColor red(255, 0, 0);
    // Cursor at 49: " 24.500" ends four pixels before the unit.
    const int width = QFontMetrics(CSmallFont::MakeFont()).horizontalAdvance("24.500");
    const QRect text(value.right - 4 - width, value.top, width, 11);
    EXPECT_GT(window.Count(text, red), 10);
    EXPECT_EQ(window.Count({value.left, value.top, text.left() - 1 - value.left, 11}, red), 0);
    EXPECT_EQ(window.Count({value.right - 4, value.top, 4, 11}, red), 0);
}

TEST_F(Console, ShowsASetBitInverted) {
    graph.SetCursorPosition(window, 60);
    window.PaintAll();
    const auto filled = [&](const SCREENRECT& cell, const QColor& color) {
        return window.Count({cell.left + 1, cell.top, cell.right - cell.left - 3, 13}, color);
    };
    EXPECT_GT(filled(Cells()[2], QColor(0, 255, 0)), 100);
    const int plain = filled(Cells()[3], QColor(0, 0, 255));
    EXPECT_TRUE(plain > 5 && plain < 60) << plain;
}

TEST_F(Console, TakesMixedRowsOneAfterTheOtherAndOverdrawsNone) {
    graph.GetData().Clear();
    // A letter a set: b for a bit that is on, s for a signal.
    for (const QString kinds : {"bsbbbsbsbsbsbsbs", "bsbsbsbsbsbsbsbs"}) {
        CGraphDataGroup& group = AddGroup("Group", DisplayType::Console);
        for (const QChar kind : kinds)
            kind == 'b' ? AddBit(group, 100, [](int) { return true; })
                        : AddSignal(group, 100, [](int) { return 1.0; });
    }
    graph.SetResetPending();
    RecordingWindow tall{graph, {600, 420}};
    tall.PaintAll();
    ASSERT_EQ(Cells().size(), 32U);
    for (const auto& [cell, top] : {std::pair{0, 5}, {1, 17}, {2, 29}, {3, 29}, {4, 41}})
        EXPECT_EQ(Cells().at(static_cast<size_t>(cell)).top, top);
    EXPECT_GT(Cells()[3].left, Cells()[2].right);
    for (const SCREENRECT& cell : Cells())
        EXPECT_GT(
            tall.Count({QPoint(cell.left, cell.top), QPoint(cell.right, cell.bottom)}, QColor(0, 255, 0)), 5)
            << cell.top;
    EXPECT_GT(tall.Count({400, Cells()[16].top - 14, 200, 12}, ColorScheme::Dark().consoleGroupName), 5);
}
