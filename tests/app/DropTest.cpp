// Files that are dropped on the window.
#include "WindowTesting.h"
#include "app/LongWork.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>

namespace {

struct Drop : ::testing::Test, SampleFolder {
    // Drags the paths over the window and drops them if it takes them. What it takes, it copies.
    bool IsTaken(const QStringList& paths, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls += path.contains("//") ? QUrl(path) : QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window.Frame(), &enter);
        QDropEvent drop(QPointF(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        if (!enter.isAccepted())
            return false;
        QCoreApplication::sendEvent(&window.Frame(), &drop);
        EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
        return drop.isAccepted();
    }
    QString Shown() {
        window.Settle();
        return window.Frame().findChild<QLabel*>("fileLabel")->text();
    }
    WindowUnderTest window;
};

} // namespace

TEST_F(Drop, OpensAFileAsOpenDoes) {
    TakeFileJustOpened();
    EXPECT_TRUE(IsTaken({Path("bend02.paf")}));
    EXPECT_FALSE(window.View().IsDataLoaded()) << "the other program need not wait for the load";
    EXPECT_EQ(Shown(), "bend 02");
    EXPECT_EQ(window.Frame().windowTitle(), "S235 4.0 mm, 135 deg, V32- bend 02");
    EXPECT_TRUE(window.IsEnabled(CommandId::NextFile));
    EXPECT_TRUE(TakeFileJustOpened());
    window.Choose(CommandId::FileOpen);
    EXPECT_EQ(window.ui.requests.back().directory, QDir::toNativeSeparators(Path("bend02.paf")));

    EXPECT_TRUE(IsTaken({Write("bad.XML", "<Odd/>")}));
    EXPECT_EQ(Shown(), "bad (new)");
    EXPECT_EQ(window.ui.TakeMessages(), (std::vector<std::string>{"stop|ERROR|Invalid root name: Odd"}));
}

TEST_F(Drop, OpensTheLowestNumberOfASetAndTheFirstOfOthers) {
    const QString note = Write("note.txt");
    const QString other = Copy("bend04.paf", "other.paf");
    QDir(Folder()).mkdir("folder.paf");
    using Case = std::pair<QStringList, const char*>;
    for (const auto& [names, shown] :
         {Case{{"bend03.paf", "bend01.paf", "bend02.paf"}, "bend 01"},
          Case{{"other.paf", "bend01.paf"}, "other (new)"},
          Case{{"note.txt", "folder.paf", "bend03.paf", "other.paf"}, "bend 03"}}) {
        QStringList paths;
        for (const QString& name : names)
            paths += Path(name);
        EXPECT_TRUE(IsTaken(paths));
        EXPECT_EQ(Shown(), shown);
    }
    for (const QString& refused : {note, Path("folder.paf"), Path("gone.paf"), QString("https://a.b/c.paf")})
        EXPECT_FALSE(IsTaken({refused})) << refused.toStdString();
    EXPECT_FALSE(IsTaken({}));
    EXPECT_FALSE(IsTaken({other}, Qt::MoveAction)) << "the file stays where it is";
    EXPECT_EQ(Shown(), "bend 03");
}

TEST_F(Drop, IsRefusedWhileADialogIsOpenOrALoadRuns) {
    const QString file = Path("bend01.paf");
    {
        const CLongWork work(window.Frame(), "work");
        EXPECT_FALSE(IsTaken({file}));
    }
    EXPECT_TRUE(IsTaken({file}));
    {
        // What was dropped a moment before the work began does not begin in the middle of it.
        CLongWork work(window.Frame(), "work");
        QCoreApplication::processEvents();
    }
    QDialog box(&window.Frame());
    box.setModal(true);
    box.show();
    EXPECT_FALSE(IsTaken({file}));
    EXPECT_FALSE(window.View().IsDataLoaded());
}
