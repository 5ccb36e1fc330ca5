#include "WindowTesting.h"

#include <gtest/gtest.h>

#include <QToolBar>

using namespace Tracelyn;

namespace {

const QString kSample = QStringLiteral(SAMPLES_DIR "/bend01.paf");

struct Started : WindowUnderTest {
    Started() : WindowUnderTest({kSample}) {}

    CGraphDataGroup& Group(const char* name) {
        return *Graph().GetData().FindGroup(QString::fromLatin1(name));
    }
    QString Selected() {
        for (const auto& group : Graph().GetData().GetGroups()) {
            if (group->m_bSelected)
                return group->m_strName;
        }
        return {};
    }
};

} // namespace

TEST(Keyboard, MovesTheCursor) {
    Started window;
    const int middle = window.Graph().GetLastIndex() / 2;
    ASSERT_EQ(window.Cursor(), middle);
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int by;
    };
    for (const Case& c :
         {Case{Qt::Key_Left, Qt::NoModifier, -1}, Case{Qt::Key_Right, Qt::NoModifier, 1},
          Case{Qt::Key_Left, Qt::ShiftModifier, -10}, Case{Qt::Key_End, Qt::NoModifier, -10},
          Case{Qt::Key_Right, Qt::ShiftModifier, 10}, Case{Qt::Key_PageDown, Qt::NoModifier, 10},
          Case{Qt::Key_Left, Qt::KeypadModifier, -1}, Case{Qt::Key_PageDown, Qt::KeypadModifier, 10}}) {
        const int before = window.Cursor();
        window.Key(c.key, c.modifiers);
        EXPECT_EQ(window.Cursor() - before, c.by) << c.key << " with " << c.modifiers;
    }
}

TEST(Keyboard, ZoomsAndKeepsTheCommandStatesCurrent) {
    Started window;
    EXPECT_TRUE(window.IsEnabled(CommandId::ZoomIn));
    EXPECT_FALSE(window.IsEnabled(CommandId::ZoomOut));
    EXPECT_FALSE(window.IsEnabled(CommandId::ZoomReset));
    window.Key(Qt::Key_Up);
    EXPECT_EQ(window.Graph().GetZoom(), 1.25F);
    EXPECT_TRUE(window.IsEnabled(CommandId::ZoomOut));
    EXPECT_TRUE(window.IsEnabled(CommandId::ZoomReset));
    window.Key(Qt::Key_Up);
    window.Key(Qt::Key_Down);
    EXPECT_EQ(window.Graph().GetZoom(), 1.25F);
    for (int i = 0; i < 30; ++i)
        window.Key(Qt::Key_Up);
    EXPECT_EQ(window.Graph().GetZoom(), 40.0F);
    EXPECT_FALSE(window.IsEnabled(CommandId::ZoomIn));
    window.Key(Qt::Key_Home);
    EXPECT_EQ(window.Graph().GetZoom(), 1.0F);
    EXPECT_FALSE(window.IsEnabled(CommandId::ZoomReset));
}

TEST(Keyboard, BothEntersToggleTheFixedCursorWithItsOddCheckMark) {
    Started window;
    EXPECT_TRUE(window.IsChecked(CommandId::ToggleFixedCursor)) << "checked without a fixed cursor";
    window.Key(Qt::Key_Return);
    EXPECT_EQ(window.Graph().GetFixedCursor(), window.Cursor());
    window.Key(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(window.Graph().GetFixedCursor(), kNoReference);
    EXPECT_TRUE(window.IsChecked(CommandId::ToggleFixedCursor));
    while (window.Cursor() > 0)
        window.Key(Qt::Key_End);
    window.Choose(CommandId::ToggleFixedCursor);
    EXPECT_EQ(window.Graph().GetFixedCursor(), 0);
    EXPECT_FALSE(window.IsChecked(CommandId::ToggleFixedCursor)) << "unchecked with one at sample 0";
}

TEST(Keyboard, SelectsAndTogglesGroups) {
    Started window;
    EXPECT_EQ(window.Selected(), QStringLiteral("Position"));
    window.Key(Qt::Key_PageDown, Qt::ShiftModifier);
    EXPECT_EQ(window.Selected(), QStringLiteral("Speed"));
    window.Key(Qt::Key_Space);
    EXPECT_FALSE(window.Group("Speed").m_bExpanded);
    window.Key(Qt::Key_PageUp, Qt::ShiftModifier);
    window.Key(Qt::Key_PageUp, Qt::ShiftModifier);
    EXPECT_EQ(window.Selected(), QStringLiteral("Position")) << "no wrap-around";

    window.Key(Qt::Key_3);
    EXPECT_EQ(window.Selected(), QStringLiteral("Pressure"));
    EXPECT_FALSE(window.Group("Pressure").m_bExpanded);
    window.Key(Qt::Key_3, Qt::KeypadModifier);
    EXPECT_FALSE(window.Group("Pressure").m_bExpanded) << "the keypad's digits do nothing";
    EXPECT_TRUE(window.ui.beeps.empty());
    for (const Qt::Key key : {Qt::Key_0, Qt::Key_9}) {
        window.Key(Qt::Key_1);
        window.Key(key);
        EXPECT_EQ(window.Selected(), QString());
        EXPECT_EQ(window.ui.beeps, std::vector<std::string>{"300/50"});
        window.ui.beeps.clear();
    }
}

TEST(Keyboard, WorksWhicheverPartOfTheWindowHasTheFocus) {
    Started window;
    window.Frame().setFocus();
    EXPECT_TRUE(window.View().hasFocus()) << "the frame passes the focus on";
    auto* const button = window.Frame().findChild<QToolBar*>()->widgetForAction(
        &window.Frame().GetAction(CommandId::FileOpen));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setFocus();
    ASSERT_TRUE(button->hasFocus());
    const int before = window.Cursor();
    const bool left = window.Graph().IsConsoleOnLeft();
    window.Key(Qt::Key_Right);
    window.Key(Qt::Key_Tab);
    window.Key(Qt::Key_2);
    EXPECT_EQ(window.Cursor(), before + 1);
    EXPECT_EQ(window.Graph().IsConsoleOnLeft(), !left);
    EXPECT_FALSE(window.Group("Speed").m_bExpanded);
    window.Key(Qt::Key_Space);
    EXPECT_TRUE(window.Group("Speed").m_bExpanded) << "Space is the group's, not the button's";
}

TEST(Keyboard, WithoutDataIsHarmless) {
    WindowUnderTest window;
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                              Qt::Key_Space, Qt::Key_Return, Qt::Key_Tab, Qt::Key_1, Qt::Key_F2, Qt::Key_F3})
        window.Key(key);
    EXPECT_EQ(window.Cursor(), 0);
    EXPECT_EQ(window.Graph().GetZoom(), 1.0F);
    EXPECT_EQ(window.Graph().GetFixedCursor(), kNoReference);
    EXPECT_FALSE(window.IsChecked(CommandId::ToggleFixedCursor));
}
