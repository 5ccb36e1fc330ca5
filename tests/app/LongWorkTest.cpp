// What a window does while a load or an export runs.
#include "app/LongWork.h"
#include "WindowTesting.h"

#include <QAbstractButton>
#include <QProgressBar>
#include <QProgressDialog>

namespace {

// Works until it is told to stop, or for at most so long.
bool WorkFor(CLongWork& work, std::chrono::milliseconds time) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < time.count()) {
        if (!work.Continue(0.5))
            return false;
    }
    return true;
}

void PressLater(QWidget* widget, Qt::Key key) {
    QCoreApplication::postEvent(widget, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
}

class Loading : public ::testing::Test, public SampleFolder {
protected:
    WindowUnderTest window{QStringList{Path("bend01.paf")}};
};

} // namespace

TEST_F(Loading, PaintsAndResizesTheWindowAndDropsItsInput) {
    const QString title = window.Frame().windowTitle();
    const int cursor = window.Cursor();
    {
        CLongWork work(window.Frame(), "work", std::chrono::milliseconds(0));
        for (const Qt::Key key : {Qt::Key_F3, Qt::Key_Right, Qt::Key_Tab})
            PressLater(window.Client(), key);
        window.Frame().resize(700, 500);
        EXPECT_TRUE(WorkFor(work, std::chrono::milliseconds(400)));
        EXPECT_EQ(window.Frame().size(), QSize(700, 500));
        EXPECT_EQ(window.Screen().deviceIndependentSize().toSize(), window.Client()->size());
        EXPECT_NE(window.Frame().findChild<QProgressBar*>("loadProgress"), nullptr);
        // What comes last is not played afterwards either.
        PressLater(window.Client(), Qt::Key_F3);
    }
    window.Settle();
    EXPECT_EQ(window.Frame().windowTitle(), title);
    EXPECT_EQ(window.Cursor(), cursor);
    EXPECT_FALSE(window.Graph().IsConsoleOnLeft());
}

TEST_F(Loading, EndsWithEscapeAndWithTheCloseBox) {
    for (const bool closes : {false, true}) {
        CLongWork work(window.Frame(), "work");
        if (closes)
            QCoreApplication::postEvent(&window.Frame(), new QCloseEvent);
        else
            PressLater(window.Client(), Qt::Key_Escape);
        QElapsedTimer timer;
        timer.start();
        EXPECT_FALSE(WorkFor(work, std::chrono::minutes(1)));
        EXPECT_FALSE(work.Continue(0.6)) << "once stopped it stays so";
        EXPECT_EQ(work.IsClosing(), closes);
        EXPECT_TRUE(window.Frame().isVisible());
    }
}

TEST_F(Loading, HasAWindowOfItsOwnBeforeTheFrameIsShown) {
    window.Frame().hide();
    CLongWork work(window.Frame(), "Loading bend01.paf", std::chrono::milliseconds(0));
    QTimer::singleShot(0, qApp, [] {
        for (QWidget* const top : QApplication::topLevelWidgets()) {
            if (auto* const dialog = qobject_cast<QProgressDialog*>(top); dialog && dialog->isVisible()) {
                EXPECT_EQ(dialog->labelText(), "Loading bend01.paf");
                QTest::mouseClick(dialog->findChild<QAbstractButton*>(), Qt::LeftButton);
            }
        }
    });
    EXPECT_FALSE(WorkFor(work, std::chrono::minutes(1)));
}

// The reference in the text sends it through the parser, which takes long enough to be stopped.
TEST_F(Loading, StoppedShowsWhatWasReadAndSaysHowFarThatIs) {
    constexpr int kRows = 20'000'000;
    const QByteArray rows = QByteArray("1\n").repeated(kRows);
    const QByteArray document =
        "<Analysis Name='long'><DataDefinition><IndexSet Name='i'><Unit/></IndexSet><VariablesDefinitions>"
        "<TypedData Name='V' Type='Float' Description='v'/></VariablesDefinitions></DataDefinition><Groups>"
        "<Group Name='g' Expanded='true'><Line DataName='V'/></Group></Groups><Data>" +
        rows + "&#49;</Data></Analysis>";
    const QString path = Write("long.xml", document);
    for (const bool closes : {false, true}) {
        window.ui.answers.emplace_back(path);
        if (closes)
            QCoreApplication::postEvent(&window.Frame(), new QCloseEvent);
        else
            PressLater(window.Client(), Qt::Key_Escape);
        window.Choose(CommandId::FileOpen);
        const auto messages = window.ui.TakeMessages();
        EXPECT_EQ(messages.size(), closes ? 0U : 1U);
        for (const std::string& message : messages)
            EXPECT_EQ(message.find("stop|ERROR|Unknown error: Loading was stopped after "), 0U) << message;
        EXPECT_EQ(window.Frame().isVisible(), !closes);
        window.Settle();
        EXPECT_LT(window.Graph().GetLastIndex(), kRows - 1);
    }
}
