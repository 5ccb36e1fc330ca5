// The window itself: menus, toolbar, status bar, start-up and the About box.
#include "WindowTesting.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

using namespace Tracelyn;

namespace {

std::vector<std::string> TextsOf(const QList<QAction*>& actions) {
    std::vector<std::string> texts;
    for (const QAction* action : actions)
        texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    return texts;
}

} // namespace

TEST(Window, HasTheMenusAndTheToolBar) {
    WindowUnderTest window;
    std::map<std::string, std::vector<std::string>> menus;
    for (const QAction* menu : window.Frame().menuBar()->actions())
        menus[menu->text().toStdString()] = TextsOf(menu->menu()->actions());
    EXPECT_EQ(menus,
              (std::map<std::string, std::vector<std::string>>{
                  {"&File", {"&Open", "&Save...", "S&ave CSV...", "&Close", "E&xit"}},
                  {"&View",
                   {"&Toolbar", "&Status Bar", "&Previous file", "&Next file", "&Change background color"}},
                  {"&Action", {"Zoom &in", "Zoom &out", "Zoom &reset", "Toggle fixed cursor"}},
                  {"&Help", {"&Help"}},
              }));
    const auto* const toolBar = window.Frame().findChild<QToolBar*>();
    std::vector<std::string> tips;
    for (const QAction* action : toolBar->actions())
        tips.push_back(action->isSeparator() ? "-" : action->toolTip().toStdString());
    EXPECT_EQ(tips, (std::vector<std::string>{"Open", "-", "Previous file", "Next file", "-",
                                              "Toggle the fixed cursor", "-", "Zoom in", "Zoom out",
                                              "Show entire graph"}));
    EXPECT_EQ(window.Frame().GetAction(CommandId::SaveCsv).statusTip(), QStringLiteral("Export to CSV file"));
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

TEST(Window, WithoutAFileIsEmpty) {
    WindowUnderTest window;
    EXPECT_EQ(window.Frame().windowTitle(), QStringLiteral("Tracelyn viewer"));
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
    const QString sample = QStringLiteral(SAMPLES_DIR "/bend01.paf");
    size_t before = 0;
    for (const QStringList& codes : {QStringList{},
                                     {QStringLiteral("60418")},
                                     {QStringLiteral("83206"), QStringLiteral("60418")},
                                     {QStringLiteral("-47195")}}) {
        WindowUnderTest window(codes + QStringList{sample});
        const size_t sets = window.Graph().GetData().GetSets().size();
        EXPECT_GT(sets, before);
        before = sets;
    }
    WindowUnderTest codeLast({sample, QStringLiteral("47195")});
    EXPECT_FALSE(codeLast.View().IsDataLoaded()) << "the last argument is the file";
    EXPECT_TRUE(codeLast.ui.TakeMessages().empty());
}

TEST(Window, OpensTheAboutBoxOnF1) {
    WindowUnderTest window;
    QString caption;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            poll.stop();
            caption = box->windowTitle();
            QTest::keyClick(box, Qt::Key_Escape);
        }
    });
    poll.start(10);
    window.Key(Qt::Key_F1);
    EXPECT_EQ(caption, QStringLiteral("About Tracelyn"));
}
