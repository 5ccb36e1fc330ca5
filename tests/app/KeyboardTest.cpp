#include "WindowTesting.h"

#include <QApplication>
#include <QMenuBar>
#include <QToolBar>

namespace {

struct Keyboard : ::testing::Test, SampleUnderTest {
    std::string Selected() {
        for (const auto& group : Graph().GetData().GetGroups()) {
            if (group->m_bSelected)
                return group->m_strName.toStdString();
        }
        return "";
    }
};

} // namespace

TEST_F(Keyboard, MovesTheCursor) {
    ASSERT_EQ(Cursor(), Graph().GetLastIndex() / 2);
    using Case = std::tuple<Qt::Key, Qt::KeyboardModifier, int>;
    for (const auto& [key, modifier, by] :
         {Case{Qt::Key_Left, Qt::NoModifier, -1}, Case{Qt::Key_Right, Qt::NoModifier, 1},
          Case{Qt::Key_Left, Qt::ShiftModifier, -10}, Case{Qt::Key_End, Qt::NoModifier, -10},
          Case{Qt::Key_Right, Qt::ShiftModifier, 10}, Case{Qt::Key_PageDown, Qt::NoModifier, 10},
          Case{Qt::Key_Left, Qt::KeypadModifier, -1}, Case{Qt::Key_PageDown, Qt::KeypadModifier, 10}}) {
        const int before = Cursor();
        Key(key, modifier);
        EXPECT_EQ(Cursor() - before, by) << key << " with " << modifier;
    }
}

TEST_F(Keyboard, ZoomsAndKeepsTheCommandStatesCurrent) {
    using Case = std::tuple<Qt::Key, int, float>; // key, times, zoom
    for (const auto& [key, times, zoom] :
         {Case{Qt::Key_Home, 1, 1.0F}, Case{Qt::Key_Up, 1, 1.25F}, Case{Qt::Key_Up, 1, 1.5625F},
          Case{Qt::Key_Down, 1, 1.25F}, Case{Qt::Key_Up, 30, 40.0F}, Case{Qt::Key_Home, 1, 1.0F}}) {
        for (int i = 0; i < times; ++i)
            Key(key);
        EXPECT_EQ(Graph().GetZoom(), zoom);
        EXPECT_EQ(IsEnabled(CommandId::ZoomIn), zoom < 40);
        EXPECT_EQ(IsEnabled(CommandId::ZoomOut), zoom > 1);
        EXPECT_EQ(IsEnabled(CommandId::ZoomReset), zoom > 1);
    }
}

TEST_F(Keyboard, BothEntersToggleTheFixedCursorWithItsOddCheckMark) {
    EXPECT_TRUE(IsChecked(CommandId::ToggleFixedCursor)) << "checked without a fixed cursor";
    Key(Qt::Key_Return);
    EXPECT_EQ(Graph().GetFixedCursor(), Cursor());
    EXPECT_TRUE(IsChecked(CommandId::ToggleFixedCursor)) << "and with one inside";
    Key(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(Graph().GetFixedCursor(), kNoReference);
    EXPECT_TRUE(IsChecked(CommandId::ToggleFixedCursor));
    while (Cursor() > 0)
        Key(Qt::Key_End);
    Choose(CommandId::ToggleFixedCursor);
    EXPECT_EQ(Graph().GetFixedCursor(), 0);
    EXPECT_FALSE(IsChecked(CommandId::ToggleFixedCursor)) << "unchecked with one at sample 0";
}

TEST_F(Keyboard, SelectsAndTogglesGroups) {
    // A letter a key: n and p for the next and the previous group, digits, with # on the keypad.
    using Case =
        std::tuple<const char*, const char*, const char*>; // keys, the selected group, those collapsed
    for (const auto& [keys, selected, collapsed] :
         {Case{"", "Position", ""}, Case{"n", "Speed", ""}, Case{" ", "Speed", "Speed"},
          Case{"pp", "Position", "Speed"}, Case{"3", "Pressure", "Speed Pressure"},
          Case{"#", "Pressure", "Speed Pressure"}, Case{"0", "", "Speed Pressure"},
          Case{"1", "Position", "Position Speed Pressure"}, Case{"9", "", "Position Speed Pressure"}}) {
        for (const char key : std::string_view(keys)) {
            if (key == 'n' || key == 'p')
                Key(key == 'n' ? Qt::Key_PageDown : Qt::Key_PageUp, Qt::ShiftModifier);
            else
                Key(key == '#' ? '3' : key, key == '#' ? Qt::KeypadModifier : Qt::NoModifier);
        }
        EXPECT_EQ(Selected(), selected) << keys;
        for (const char* const name : {"Position", "Speed", "Pressure"})
            EXPECT_EQ(Group(name).m_bExpanded, !QString(collapsed).contains(name)) << keys;
        EXPECT_EQ(std::exchange(ui.beeps, {}), std::vector<std::string>(*selected == '\0' ? 1 : 0, "300/50"));
    }
}

TEST_F(Keyboard, WorksWhicheverPartOfTheWindowHasTheFocus) {
    Frame().setFocus();
    EXPECT_TRUE(View().hasFocus()) << "the frame passes the focus on";
    auto* const button =
        Frame().findChild<QToolBar*>()->widgetForAction(&Frame().GetAction(CommandId::FileOpen));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setFocus();
    ASSERT_TRUE(button->hasFocus());
    const int before = Cursor();
    const bool left = Graph().IsConsoleOnLeft();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Tab, Qt::Key_2})
        Key(key);
    EXPECT_EQ(Cursor(), before + 1);
    EXPECT_EQ(Graph().IsConsoleOnLeft(), !left);
    EXPECT_FALSE(Group("Speed").m_bExpanded);
    Key(Qt::Key_Space);
    EXPECT_TRUE(Group("Speed").m_bExpanded) << "Space is the group's, not the button's";
}

TEST_F(Keyboard, IsTheMenusAfterATapOnAltOrF10) {
    const QImage before = Screen();
    QWidget& bar = *Frame().menuBar();
    const QImage plain = bar.grab().toImage();
    const auto menu = [] { return QApplication::activePopupWidget(); };
    for (const Qt::Key tap : {Qt::Key_Alt, Qt::Key_F10}) {
        for (const Qt::Key end : {Qt::Key_Escape, tap}) {
            Key(tap);
            for (const Qt::Key key :
                 {Qt::Key_Right, Qt::Key_Left, Qt::Key_Tab, Qt::Key_2, Qt::Key_Home, Qt::Key_F3})
                Key(key);
            EXPECT_TRUE(Screen() == before) << tap;
            EXPECT_FALSE(bar.grab().toImage() == plain) << "a title is highlighted";
            Key(Qt::Key_Return);
            ASSERT_NE(menu(), nullptr) << tap;
            EXPECT_NE(PaintedAt(*menu(), "tatus Bar"), -1) << "the arrows chose the menu";
            Key(Qt::Key_2);
            Key(end);
            if (end == Qt::Key_Escape)
                Key(end);
            EXPECT_EQ(menu(), nullptr) << tap;
            EXPECT_TRUE(bar.grab().toImage() == plain) << tap;
            Key(Qt::Key_Right);
            EXPECT_FALSE(Screen() == before) << "given back";
            Key(Qt::Key_Left);
        }
    }
    Key(Qt::Key_A, Qt::AltModifier);
    ASSERT_NE(menu(), nullptr);
    EXPECT_NE(PaintedAt(*menu(), "Toggle fixed cursor"), -1);
    EXPECT_NE(PaintedAt(*menu(), "Enter"), -1) << "the key is called as in the help";
    Key(Qt::Key_Escape);
}

TEST(KeyboardWithoutData, IsHarmless) {
    WindowUnderTest window;
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                              Qt::Key_Space, Qt::Key_Return, Qt::Key_Tab, Qt::Key_1, Qt::Key_F2, Qt::Key_F3})
        window.Key(key);
    EXPECT_EQ(window.Cursor(), 0);
    EXPECT_EQ(window.Graph().GetZoom(), 1.0F);
    EXPECT_EQ(window.Graph().GetFixedCursor(), kNoReference);
    EXPECT_FALSE(window.IsChecked(CommandId::ToggleFixedCursor));
}
