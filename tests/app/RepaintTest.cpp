// What the window shows after partial repaints, and how little it paints for them.
#include "WindowTesting.h"

namespace {

struct WindowRepaint : ::testing::Test, WindowUnderTest {
    WindowRepaint() : WindowUnderTest({"47195", SAMPLES_DIR "/bend04.paf"}) {}
};

} // namespace

TEST_F(WindowRepaint, LeavesNoTracesBehindTheCursors) {
    for (int round = 0; round < 3; ++round) {
        using Case = std::tuple<Qt::Key, Qt::KeyboardModifier, int>;
        for (const auto& [key, modifiers, times] :
             {Case{Qt::Key_Right, Qt::NoModifier, 7}, Case{Qt::Key_Right, Qt::ShiftModifier, 5},
              Case{Qt::Key_Return, Qt::NoModifier, 1}, Case{Qt::Key_Left, Qt::NoModifier, 9},
              Case{Qt::Key_Left, Qt::ShiftModifier, 11}, Case{Qt::Key_PageDown, Qt::ShiftModifier, 1},
              Case{Qt::Key_Return, Qt::NoModifier, 1}, Case{Qt::Key_Right, Qt::NoModifier, 2}}) {
            for (int i = 0; i < times; ++i)
                Key(key, modifiers);
            const QImage shown = Screen();
            Client()->update(); // everything anew
            ASSERT_EQ(shown, Screen()) << "round " << round << ", key " << key;
        }
        for (int i = 0; i < 5; ++i)
            Key(Qt::Key_Up);
    }
}

TEST_F(WindowRepaint, OfACursorStepIsTwoStripsAndTheValueCells) {
    Screen();
    std::vector<SCREENRECT> cells;
    Graph().GetCanvas().CollectScreenRects(kValueRect, cells);
    int64_t allowed = 2 * Client()->height();
    for (const SCREENRECT& cell : cells)
        allowed += int64_t{cell.right - cell.left} * (cell.bottom - cell.top);
    const double scale = Client()->devicePixelRatioF();
    if (scale != std::floor(scale))
        allowed *= 4;

    const PaintCounter counter(Client());
    Key(Qt::Key_Right);
    EXPECT_GT(counter.area, 0);
    EXPECT_LE(counter.area, allowed);
    EXPECT_LT(counter.area, int64_t{Client()->width()} * Client()->height() / 4);
}
