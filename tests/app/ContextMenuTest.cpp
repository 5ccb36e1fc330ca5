// The menu of the picture, and what it puts on the clipboard.
#include "WindowTesting.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStatusBar>

namespace {

struct ContextMenu : ::testing::Test, SampleUnderTest {
    static QMenu* Menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    void RightClick(QWidget& widget, QPoint at) {
        QTest::mouseClick(Frame().windowHandle(), Qt::RightButton, {}, widget.mapTo(&Frame(), at));
        Settle();
    }
    void PressMenuKey() { Ask(View(), QContextMenuEvent::Keyboard); }
    // For the key it makes no difference where the mouse is.
    void Ask(QWidget& widget, QContextMenuEvent::Reason reason) {
        QContextMenuEvent event(reason, {3, 3}, widget.mapToGlobal(QPoint(3, 3)));
        QCoreApplication::sendEvent(&widget, &event);
        Settle();
    }
    QPoint MenuPlace() { return Client()->mapFromGlobal(Menu()->pos()); }
    int CursorColumn() {
        return Graph().GetCanvas().GetTimeAxis().WorldToPixelX(static_cast<float>(Cursor()));
    }
};

} // namespace

TEST_F(ContextMenu, OpensByMouseAndKeyAndTellsWhatEachEntryDoes) {
    RightClick(*View().horizontalScrollBar(), {50, 5});
    EXPECT_EQ(Menu(), nullptr) << "the scroll bar has none";
    RightClick(*Client(), {200, 50});
    ASSERT_NE(Menu(), nullptr);
    EXPECT_EQ(MenuPlace(), QPoint(200, 50));
    for (const auto& [text, prompt] :
         {std::pair{"Show every &event", "Hide no sample in view, however short an event is"},
          {"&Measure", "Show figures of the signals between the cursors"},
          {"C&ompare with...", "Draw a second recording behind this one"},
          {"&Copy picture", "Copy the picture as it is on the screen"},
          {"&Save picture...", "Save the picture as a PNG, SVG or PDF file"},
          {"Copy &values", "Copy the values at the cursor, for a spreadsheet"}}) {
        // Some styles underline elsewhere: there, what is beside the letter is looked for.
        const QString before = QString(text).section('&', 0, 0).trimmed();
        const QString after = QString(text).section('&', 1).mid(1);
        EXPECT_TRUE(PaintedAt(*Menu(), text) != -1 ||
                    PaintedAt(*Menu(), before.size() > after.size() ? before : after) != -1)
            << text;
        QTest::keyClick(Menu(), Qt::Key_Down);
        EXPECT_EQ(PaintedAt(*Frame().statusBar(), prompt), 6) << prompt;
    }
    QTest::keyClick(Menu(), Qt::Key_Escape);
    const int before = Cursor();
    Key(Qt::Key_Right);
    EXPECT_EQ(Cursor(), before + 1) << "the keys are the picture's again";

    PressMenuKey();
    ASSERT_NE(Menu(), nullptr);
    EXPECT_EQ(MenuPlace(), QPoint(CursorColumn(), 0));
    QTest::keyClick(Menu(), Qt::Key_Escape);
    QTest::mousePress(Client(), Qt::LeftButton, {}, {100, 40});
    Ask(*Client(), QContextMenuEvent::Mouse);
    EXPECT_EQ(Menu(), nullptr) << "not while the cursor is dragged";
    QTest::mouseRelease(Client(), Qt::LeftButton, {}, {100, 40});

    Choose(CommandId::FileClose);
    PressMenuKey();
    ASSERT_NE(Menu(), nullptr);
    EXPECT_EQ(MenuPlace(), QPoint(0, 0));
    for (const QAction* action : Menu()->actions())
        EXPECT_FALSE(action->isEnabled() && !action->isSeparator()) << action->text().toStdString();
    QTest::keyClick(Menu(), Qt::Key_Escape);
}

TEST_F(ContextMenu, CopiesThePictureAndTheValues) {
    const QClipboard& clipboard = *QApplication::clipboard();
    const QImage screen = Screen();
    Choose(CommandId::CopyPicture);
    EXPECT_EQ(clipboard.image().convertToFormat(screen.format()), screen);

    Key(Qt::Key_Return);
    for (int i = 0; i < 5; ++i)
        Key(Qt::Key_Right);
    Choose(CommandId::CopyValues);
    const QStringList lines = clipboard.text().split('\n');
    EXPECT_EQ(lines.first(), "Time\t5\tms") << "the axis counts from the fixed cursor";
    const auto at = lines.indexOf("Pressure");
    EXPECT_EQ(lines.mid(at, 3).join('|'), "Pressure|P1\t131.1\tbar|P2\t123.9\tbar");
    EXPECT_TRUE(lines.contains("Pedal down\t1\t") && lines.contains("Pedal up\t0\t"));
}

TEST_F(ContextMenu, SavesThePictureInTheFormatOfItsName) {
    const SampleFolder folder;
    WindowUnderTest window({folder.Path("bend01.paf")});
    const auto say = [&](const QString& path) {
        window.ui.answers = {path};
        window.Choose(CommandId::SavePicture);
        return QString::fromStdString(window.ui.TakeMessages().front()).replace(path, "@").toStdString();
    };
    const QImage screen = window.Screen();
    using Case = std::pair<QString, QByteArray>; // name, what its contents begin with
    for (const auto& [name, begin] :
         {Case{"a.svg", "<?xml"}, Case{"a.PDF", "%PDF"}, Case{"a.png", "\x89PNG"}}) {
        EXPECT_EQ(say(folder.Write(name, "old")), "info|Tracelyn|File '@' was created successfully");
        EXPECT_TRUE(folder.Read(folder.Path(name)).startsWith(begin)) << name.toStdString();
    }
    EXPECT_EQ(QImage(folder.Path("a.png")).convertToFormat(screen.format()), screen);
    EXPECT_TRUE(folder.Read(folder.Path("a.svg")).contains(">Position error</text>"));
    EXPECT_EQ(window.ui.requests.front().fileName, "bend01");
    EXPECT_EQ(window.ui.requests.front().knownExtensions, (QStringList{"png", "svg", "pdf"}));

    ASSERT_TRUE(LinkTo(folder.Path("bend01.paf"), folder.Path("link.png")));
    EXPECT_EQ(say(folder.Path("link.png")), "stop|Tracelyn|Picture not saved.\n'@' is the opened recording.");
    EXPECT_EQ(say("/nowhere/a.png"), "stop|Tracelyn|Picture not saved.\nError during write operation.");
}
