#include "WindowTesting.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QScrollBar>

using namespace Tracelyn;

namespace {

struct Started : WindowUnderTest {
    Started() : WindowUnderTest({QStringLiteral(SAMPLES_DIR "/bend01.paf")}) {}

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
        const SCREENRECT* rect = Graph().GetCanvas().FindScreenRect(QString::fromLatin1(name));
        return {rect->left + 40, rect->top + 6};
    }
    bool IsExpanded(const char* name) {
        return Graph().GetData().FindGroup(QString::fromLatin1(name))->m_bExpanded;
    }
};

} // namespace

TEST(Mouse, MovesTheCursorWhileTheLeftButtonAloneIsHeld) {
    Started window;
    window.Press({100, 40});
    EXPECT_EQ(window.Cursor(), window.SampleAt(100));
    window.MoveTo({110, 40}, Qt::LeftButton, Qt::NoModifier);
    EXPECT_EQ(window.Cursor(), window.SampleAt(110));
    for (const auto& [buttons, modifiers] :
         std::initializer_list<std::pair<Qt::MouseButtons, Qt::KeyboardModifiers>>{
             {Qt::LeftButton, Qt::ShiftModifier},
             {Qt::LeftButton, Qt::ControlModifier},
             {Qt::LeftButton | Qt::RightButton, Qt::NoModifier},
             {Qt::NoButton, Qt::NoModifier}})
        window.MoveTo({200, 40}, buttons, modifiers);
    EXPECT_EQ(window.Cursor(), window.SampleAt(110));
    window.MoveTo({120, 40}, Qt::LeftButton, Qt::NoModifier);
    window.Release({120, 40});
    EXPECT_EQ(window.Cursor(), window.SampleAt(120));
    QTest::mousePress(window.Client(), Qt::RightButton, Qt::NoModifier, QPoint(200, 40));
    QTest::mouseRelease(window.Client(), Qt::RightButton, Qt::NoModifier, QPoint(200, 40));
    EXPECT_EQ(window.Cursor(), window.SampleAt(120));
}

TEST(Mouse, HeldStillSetsTheCursorAgainByTimer) {
    Started window;
    window.Press({100, 40});
    const auto moveAway = [&] { // again when a slow machine lets the timer come between
        window.Key(Qt::Key_Right);
        return window.Cursor() != window.SampleAt(100);
    };
    EXPECT_TRUE(QTest::qWaitFor(moveAway, 5000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.Cursor() == window.SampleAt(100); }, 5000));
    window.Release({100, 40});
    window.Key(Qt::Key_Right);
    EXPECT_FALSE(QTest::qWaitFor([&] { return window.Cursor() == window.SampleAt(100); }, 250))
        << "the timer stops with the button";
}

TEST(Mouse, TogglesAGroupOnReleaseOverItsName) {
    Started window;
    const int cursor = window.Cursor();
    window.Press(window.HeaderOf("Speed"));
    EXPECT_TRUE(window.IsExpanded("Speed"));
    window.Release(window.HeaderOf("Speed"));
    EXPECT_FALSE(window.IsExpanded("Speed"));
    window.Settle();
    window.Press({150, 40});
    window.Release(window.HeaderOf("Speed"));
    EXPECT_TRUE(window.IsExpanded("Speed")) << "only the release point counts";
    window.Settle();
    window.Press({window.Client()->width() / 2, 40});
    window.Release({window.Client()->width() / 2, 40});
    EXPECT_NEAR(window.Cursor(), cursor, 2 * window.Graph().GetCanvas().GetTimeAxis().GetSamplesPerPixel())
        << "a press on a header moves no cursor";
}

TEST(Mouse, OnAValueCellDoesNothing) {
    Started window;
    const QImage before = window.Screen();
    const int cursor = window.Cursor();
    const SCREENRECT cell = *window.Graph().GetCanvas().FindScreenRect(kValueRect);
    QTest::mouseClick(window.Client(), Qt::LeftButton, Qt::NoModifier, QPoint(cell.left + 5, cell.top + 5));
    EXPECT_EQ(window.Cursor(), cursor);
    EXPECT_EQ(window.Screen(), before);
}

TEST(Mouse, TimerStopsWhenABoxTakesTheReleaseAway) {
    Started window;
    window.Press({100, 40});
    QDialog box(&window.Frame());
    box.setModal(true);
    box.show();
    window.Settle();
    box.close();
    window.Frame().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window.Frame()));
    window.Key(Qt::Key_Right);
    ASSERT_EQ(window.Cursor(), window.SampleAt(100) + 1);
    EXPECT_FALSE(QTest::qWaitFor([&] { return window.Cursor() == window.SampleAt(100); }, 250));
}

TEST(MouseOnScrollBar, ScrollsAndIsDisabledWhenNothingCan) {
    Started window;
    QScrollBar& bar = *window.View().horizontalScrollBar();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_FALSE(bar.isEnabled());
    for (int i = 0; i < 8; ++i)
        window.Key(Qt::Key_Up);
    ASSERT_TRUE(bar.isEnabled());
    const WorldRect full = window.Graph().GetCanvas().GetFull();
    const auto visible = [&] { return window.Graph().GetCanvas().GetVisible(); };
    const float width = visible().x2 - visible().x1;
    EXPECT_EQ(bar.minimum(), 1);
    EXPECT_EQ(bar.pageStep(), static_cast<int>(width));
    EXPECT_EQ(bar.maximum(), static_cast<int>(full.x2) - 1 - bar.pageStep() + 1);
    EXPECT_EQ(bar.value(), static_cast<int>(visible().x1));

    const float start = visible().x1;
    bar.triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_FLOAT_EQ(visible().x1, start + width / 10);
    bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_FLOAT_EQ(visible().x1, start + width / 10 - width / 2);
    EXPECT_EQ(bar.value(), static_cast<int>(visible().x1));
    for (int i = 0; i < 40; ++i)
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_FLOAT_EQ(visible().x2, full.x2);
    EXPECT_GE(bar.value(), bar.maximum() - 1);

    // Through real input: a click into the trough left of the thumb, then a drag of the thumb.
    QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(bar.width() / 4, bar.height() / 2));
    window.Settle();
    EXPECT_LT(visible().x2, full.x2);
    bar.setSliderDown(true);
    bar.setSliderPosition(100);
    bar.setSliderDown(false);
    window.Settle();
    EXPECT_FLOAT_EQ(visible().x1, 100.0F);
}
