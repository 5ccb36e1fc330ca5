// The window itself: menus, toolbar, status bar, start-up and the About box.
#include "WindowTesting.h"

#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>

TEST(Window, HasTheMenusAndTheToolBar) {
    WindowUnderTest window;
    QStringList menus;
    for (const QAction* menu : window.Frame().menuBar()->actions()) {
        menus += "* " + menu->text();
        for (const QAction* action : menu->menu()->actions())
            menus += action->isSeparator() ? "-" : action->text();
    }
    EXPECT_EQ(menus.join("|"),
              "* &File|&Open|&Save...|S&ave CSV...|&Close|E&xit|"
              "* &View|&Toolbar|&Status Bar|&Previous file|&Next file|&Change background color|"
              "* &Action|Zoom &in|Zoom &out|Zoom &reset|Toggle fixed cursor|* &Help|&Help");
    const auto* const toolBar = window.Frame().findChild<QToolBar*>();
    QStringList tips;
    for (const QAction* action : toolBar->actions())
        tips += action->isSeparator() ? "-" : action->toolTip();
    EXPECT_EQ(tips.join("|"), "Open|-|Previous file|Next file|-|Toggle the fixed cursor|-|Zoom in|Zoom out|"
                              "Show entire graph");
    EXPECT_EQ(window.Frame().GetAction(CommandId::SaveCsv).statusTip(), "Export to CSV file");
    EXPECT_EQ(toolBar->iconSize(), QSize(16, 16));
    EXPECT_TRUE(toolBar->isMovable());
}

TEST(Window, TogglesToolBarAndStatusBar) {
    WindowUnderTest window;
    const QWidget* const toolBar = window.Frame().findChild<QToolBar*>();
    for (const auto& [id, bar] : {std::pair<CommandId, const QWidget*>{CommandId::ViewToolbar, toolBar},
                                  {CommandId::ViewStatusBar, window.Frame().statusBar()}}) {
        EXPECT_TRUE(window.IsChecked(id));
        window.Choose(id);
        EXPECT_FALSE(bar->isVisible());
        EXPECT_FALSE(window.IsChecked(id));
        window.Choose(id);
        EXPECT_TRUE(bar->isVisible());
        EXPECT_TRUE(window.IsChecked(id));
    }
}

TEST(StatusBar, ShowsThePromptOrReadyAndAlwaysTheNumber) {
    const SampleFolder folder;
    const QString name = "a bend with a name that is too long for small windows";
    WindowUnderTest window({folder.Copy("bend01.paf", name + "07.paf")});
    QWidget& bar = *window.Frame().statusBar();
    const auto hover = [&](CommandId id) {
        QWidget* const button =
            window.Frame().findChild<QToolBar*>()->widgetForAction(&window.Frame().GetAction(id));
        QTest::mouseMove(button);
        window.Settle();
    };
    window.Frame().resize(1200, 500);
    window.Settle();
    const int label = PaintedAt(bar, name + " 07");
    EXPECT_GT(label, 500);
    EXPECT_EQ(PaintedAt(bar, "Ready"), 6);
    for (const auto& [id, prompt] : {std::pair{CommandId::ZoomReset, "Show entire graph"},
                                     {CommandId::NextFile, "Load next file from this set"}}) {
        hover(id);
        EXPECT_EQ(PaintedAt(bar, prompt), 6);
        EXPECT_EQ(PaintedAt(bar, "Ready"), -1);
        EXPECT_EQ(PaintedAt(bar, name + " 07"), label) << "it stays where it is";
    }
    QTest::mouseMove(window.Client());
    window.Frame().resize(400, 400);
    window.Settle();
    EXPECT_EQ(window.Frame().width(), 400);
    EXPECT_EQ(PaintedAt(bar, "Ready"), 6);
    QString elided = "?";
    for (int width = 50; width < 200 && PaintedAt(bar, elided) == -1; ++width)
        elided = bar.fontMetrics().elidedText(name + " 07", Qt::ElideMiddle, width);
    EXPECT_GT(PaintedAt(bar, elided), 100);
    EXPECT_TRUE(elided.endsWith(" 07")) << qPrintable(elided);
}

TEST(WindowSize, LeavesRoomForTheTitleBarOnASmallScreen) {
    WindowUnderTest window;
    const QSize screen = window.Frame().screen()->availableSize();
    ASSERT_LT(screen.height(), 850) << "too large a screen for this test";
    EXPECT_EQ((window.Frame().frameSize() + QSize(0, 40)).boundedTo(screen),
              window.Frame().frameSize() + QSize(0, 40));
    window.Frame().resize(400, 300);
    EXPECT_EQ(window.Frame().size(), QSize(400, 300));
}

TEST(Window, WithoutAFileIsEmpty) {
    WindowUnderTest window;
    EXPECT_EQ(window.Frame().windowTitle(), "Tracelyn viewer");
    for (const CommandId id :
         {CommandId::FileClose, CommandId::SaveCsv, CommandId::PreviousFile, CommandId::NextFile,
          CommandId::ZoomIn, CommandId::ZoomOut, CommandId::ZoomReset, CommandId::ToggleFixedCursor})
        EXPECT_FALSE(window.IsEnabled(id)) << static_cast<int>(id);
    for (const CommandId id :
         {CommandId::FileOpen, CommandId::FileSave, CommandId::ChangeBackground, CommandId::About})
        EXPECT_TRUE(window.IsEnabled(id)) << static_cast<int>(id);
    EXPECT_EQ(window.Screen().pixelColor(10, 10), QColor(0, 0, 0));
    window.Choose(CommandId::ChangeBackground);
    EXPECT_EQ(window.Screen().pixelColor(10, 10), QColor(240, 240, 250));
}

TEST(Window, ShowsSignalsByTheAccessCodesOfTheCommandLine) {
    const QString sample = SAMPLES_DIR "/bend01.paf";
    size_t before = 0;
    for (const QStringList& codes : {QStringList{}, {"60418"}, {"83206", "60418"}, {"-47195"}}) {
        WindowUnderTest window(codes + QStringList{sample});
        EXPECT_GT(window.Graph().GetData().GetSets().size(), before);
        before = window.Graph().GetData().GetSets().size();
    }
    WindowUnderTest codeLast({sample, "47195"});
    EXPECT_FALSE(codeLast.View().IsDataLoaded()) << "the last argument is the file";
    EXPECT_TRUE(codeLast.ui.TakeMessages().empty());
}

TEST(Window, OpensTheAboutBoxOnF1) {
    WindowUnderTest window;
    QString caption;
    const WhenModal answer([&](QDialog& box) {
        caption = box.windowTitle();
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    window.Key(Qt::Key_F1);
    EXPECT_EQ(caption, "About Tracelyn");
}
