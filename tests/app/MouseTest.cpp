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
    // In notches; above 0 up, and left.
    void Turn(double y, double x = 0, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
              QWidget* over = nullptr) {
        QWidget& target = over == nullptr ? *Client() : *over;
        const QPoint angle(static_cast<int>(120 * x), static_cast<int>(120 * y));
        QWheelEvent wheel(QPointF(9, 9), target.mapToGlobal(QPointF(9, 9)), {}, angle, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&target, &wheel);
        Settle();
    }
    float Left() { return Graph().GetCanvas().GetVisible().x1; }
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

TEST_F(Mouse, WheelScrollsAsTheArrowsOfTheBarDo) {
    QScrollBar& bar = *View().horizontalScrollBar();
    Turn(-1);
    EXPECT_EQ(Left(), 0.0F) << "everything is in view";
    for (int i = 0; i < 8; ++i)
        Key(Qt::Key_Up);
    const float start = Left();
    const WorldRect visible = Graph().GetCanvas().GetVisible();
    const float tenth = (visible.x2 - visible.x1) / 10;
    // Turns one after the other, and the tenths of the view from where it all began.
    for (const auto& [y, x, modifiers, over, tenths] :
         {std::tuple<double, double, Qt::KeyboardModifiers, QWidget*, int>{-1, 0, {}, nullptr, 1},
          {1, 0, {}, nullptr, 0},
          {0, -1, {}, nullptr, 1},
          {0, 1, {}, &bar, 0},
          {-2, 0, Qt::ShiftModifier, &bar, 2},
          {2, 0, Qt::AltModifier, nullptr, 0},
          {-0.25, 0.1, {}, nullptr, 0},
          {-0.5, 0, {}, nullptr, 0},
          {-0.25, 0, {}, nullptr, 1},
          {-0.75, 0, {}, nullptr, 1},
          {0.75, 0, {}, nullptr, 1},
          {0.25, 0, {}, nullptr, 0},
          {50, 0, {}, nullptr, -100}}) {
        Turn(y, x, modifiers, over);
        EXPECT_NEAR(Left(), std::max(0.0F, start + static_cast<float>(tenths) * tenth), 0.5) << y << " " << x;
        EXPECT_EQ(bar.value(), std::max(1, static_cast<int>(Left())));
    }
}

TEST_F(Mouse, WheelZoomsWithCtrlAsTheCommandsDo) {
    for (const auto& [notches, zoom] : {std::pair{1.0, 1.25F},
                                        {0.5, 1.25F},
                                        {0.5, 1.5625F},
                                        {-1.0, 1.25F},
                                        {-5.0, 1.0F},
                                        {40.0, 40.0F},
                                        {-40.0, 1.0F}}) {
        Turn(notches, 0, Qt::ControlModifier);
        EXPECT_FLOAT_EQ(Graph().GetZoom(), zoom) << notches;
        EXPECT_EQ(IsEnabled(CommandId::ZoomOut), zoom > 1);
        EXPECT_EQ(IsEnabled(CommandId::ZoomIn), zoom < 40);
    }
    Choose(CommandId::FileClose);
    Turn(3, 0, Qt::ControlModifier);
    Turn(-3);
    EXPECT_EQ(Graph().GetZoom(), 1.0F) << "nothing without a recording";
}
