#include "WindowTesting.h"

#include <QScrollBar>

namespace {

struct Mouse : ::testing::Test, SampleUnderTest {
    // The sample under a column of the client area.
    int SampleAt(int x) {
        return static_cast<int>(double(x) / Client()->width() * Graph().GetLastIndex() + 0.5);
    }
    void Press(QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mousePress(Client(), Qt::LeftButton, modifiers, at);
    }
    void Release(QPoint at) { QTest::mouseRelease(Client(), Qt::LeftButton, Qt::NoModifier, at); }
    void MoveTo(QPoint at, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
        QMouseEvent move(QEvent::MouseMove, at, Client()->mapToGlobal(at), Qt::NoButton, buttons, modifiers);
        QCoreApplication::sendEvent(Client(), &move);
    }
    QPoint HeaderOf(const char* name) {
        const SCREENRECT* rect = Graph().GetCanvas().FindScreenRect(GroupNameRect(name));
        return {rect->left + 40, rect->top + 6};
    }
    bool IsAtColumn(int x) { return Cursor() == SampleAt(x); }
};

} // namespace

TEST_F(Mouse, MovesTheCursorWhileTheLeftButtonAloneIsHeld) {
    Press({100, 40});
    EXPECT_EQ(Cursor(), SampleAt(100));
    MoveTo({110, 40}, Qt::LeftButton, Qt::NoModifier);
    EXPECT_EQ(Cursor(), SampleAt(110));
    using Case = std::pair<Qt::MouseButtons, Qt::KeyboardModifier>;
    for (const auto& [buttons, modifiers] :
         {Case{Qt::LeftButton, Qt::ShiftModifier}, Case{Qt::LeftButton, Qt::ControlModifier},
          Case{Qt::LeftButton | Qt::RightButton, Qt::NoModifier}, Case{Qt::NoButton, Qt::NoModifier}})
        MoveTo({200, 40}, buttons, modifiers);
    EXPECT_EQ(Cursor(), SampleAt(110));
    MoveTo({120, 40}, Qt::LeftButton, Qt::NoModifier);
    Release({120, 40});
    EXPECT_EQ(Cursor(), SampleAt(120));
    QTest::mouseClick(Client(), Qt::RightButton, Qt::NoModifier, QPoint(200, 40));
    EXPECT_EQ(Cursor(), SampleAt(120));
}

TEST_F(Mouse, HeldStillSetsTheCursorAgainByTimer) {
    Press({100, 40});
    const auto moveAway = [&] { // again when a slow machine lets the timer come between
        Key(Qt::Key_Right);
        return Cursor() != SampleAt(100);
    };
    EXPECT_TRUE(QTest::qWaitFor(moveAway, 5000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsAtColumn(100); }, 5000));
    Release({100, 40});
    Key(Qt::Key_Right);
    EXPECT_FALSE(QTest::qWaitFor([&] { return IsAtColumn(100); }, 250)) << "the timer stops with the button";
}

TEST_F(Mouse, TogglesAGroupOnReleaseOverItsName) {
    const int cursor = Cursor();
    Press(HeaderOf("Speed"));
    EXPECT_TRUE(Group("Speed").m_bExpanded);
    Release(HeaderOf("Speed"));
    EXPECT_FALSE(Group("Speed").m_bExpanded);
    Settle();
    Press({150, 40});
    Release(HeaderOf("Speed"));
    EXPECT_TRUE(Group("Speed").m_bExpanded) << "only the release point counts";
    Settle();
    Press({Client()->width() / 2, 40});
    Release({Client()->width() / 2, 40});
    EXPECT_NEAR(Cursor(), cursor, 2 * Graph().GetCanvas().GetTimeAxis().GetSamplesPerPixel())
        << "a press on a header moves no cursor";
}

TEST_F(Mouse, TimerStopsWhenABoxTakesTheReleaseAway) {
    Press({100, 40});
    QDialog box(&Frame());
    box.setModal(true);
    box.show();
    Settle();
    box.close();
    Frame().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Frame()));
    Key(Qt::Key_Right);
    ASSERT_EQ(Cursor(), SampleAt(100) + 1);
    EXPECT_FALSE(QTest::qWaitFor([&] { return IsAtColumn(100); }, 250));
}

TEST_F(Mouse, HasAScrollBarThatIsDisabledWhenNothingCanScroll) {
    QScrollBar& bar = *View().horizontalScrollBar();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_FALSE(bar.isEnabled());
    for (int i = 0; i < 8; ++i)
        Key(Qt::Key_Up);
    ASSERT_TRUE(bar.isEnabled());
    const WorldRect full = Graph().GetCanvas().GetFull();
    const WorldRect visible = Graph().GetCanvas().GetVisible();
    EXPECT_EQ(bar.minimum(), 1);
    EXPECT_EQ(bar.pageStep(), static_cast<int>(visible.x2 - visible.x1));
    EXPECT_EQ(bar.maximum(), static_cast<int>(full.x2) - 1 - bar.pageStep() + 1);
    EXPECT_EQ(bar.value(), static_cast<int>(visible.x1));
}
