// The commands on files, with the words they say and the order they say them in.
#include "WindowTesting.h"

#include "reader/container/zip.h"
#include "render/FileJustOpened.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QLabel>

#include <stdexcept>

using namespace Tracelyn;

namespace {

using Messages = std::vector<std::string>;

std::string Text(const QString& text) {
    return text.toStdString();
}

void Open(WindowUnderTest& window, const QString& path) {
    window.ui.answers.push_back(path);
    window.Choose(CommandId::FileOpen);
    window.Settle();
}

// What the window says to a command whose dialog is answered with the path, "@" for the path.
std::string Say(WindowUnderTest& window, CommandId id, const std::optional<QString>& path) {
    window.ui.answers = {path};
    window.Choose(id);
    QString said;
    for (const std::string& message : window.ui.TakeMessages())
        said += QString::fromStdString(message);
    return said.replace(path.value_or(QStringLiteral("(none)")), QStringLiteral("@")).toStdString();
}

const std::string kNotSaved = "info|Tracelyn|File '@' is not saved!\nFile already exists!";
const std::string kCreated = "info|Tracelyn|File '@' was created successfully";

QString PaneText(WindowUnderTest& window) {
    return window.Frame().findChild<QLabel*>(QStringLiteral("fileLabel"))->text();
}

const QByteArray kBroken =
    R"(<Analysis Name="Half"><DataDefinition><IndexSet Name="T"><Unit Name="ms"/></IndexSet>
<VariablesDefinitions><Odd/><TypedData Name="a" Type="Float" Description="A"/></VariablesDefinitions></DataDefinition>
<Groups><Group Name="G"><Line DataName="a"/><Line DataName="missing"/></Group></Groups></Analysis>)";

} // namespace

TEST(FileOpen, LoadsTheFileAndShowsItsNameEverywhere) {
    const SampleFolder folder;
    WindowUnderTest window;
    TakeFileJustOpened();
    Open(window, folder.Path(QStringLiteral("bend02.paf")));
    EXPECT_TRUE(window.View().IsDataLoaded());
    EXPECT_EQ(window.Frame().windowTitle(), QStringLiteral("S235 4.0 mm, 135 deg, V32- bend 02"));
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 02"));
    EXPECT_TRUE(window.ui.TakeMessages().empty());
    for (const CommandId id : {CommandId::FileClose, CommandId::SaveCsv, CommandId::PreviousFile,
                               CommandId::NextFile, CommandId::ZoomIn, CommandId::ToggleFixedCursor})
        EXPECT_TRUE(window.IsEnabled(id)) << static_cast<int>(id);
    EXPECT_TRUE(TakeFileJustOpened());

    const FileRequest& request = window.ui.requests.front();
    EXPECT_EQ(request.directory, QDir::toNativeSeparators(QDir::tempPath()));
    EXPECT_EQ(request.filters,
              (QList<FileFilter>{{"Analysis Files", {"*.paf", "*.xml"}}, {"All Files", {"*"}}}));
    window.Choose(CommandId::FileOpen);
    EXPECT_EQ(window.ui.requests.back().directory, folder.Path(QStringLiteral("bend02.paf")));
    EXPECT_TRUE(window.View().IsDataLoaded()) << "cancelling changes nothing";
}

TEST(FileOpen, FindsNamesInAnyCaseAndWithAnyCharacters) {
    const SampleFolder folder;
    for (const QString& name : {QStringLiteral("RUN05.PAF"), QStringLiteral("Bänder %1 \U0001F600 n.paf"),
                                QStringLiteral("a[*]b.paf")}) {
        WindowUnderTest window;
        Open(window, folder.Copy(QStringLiteral("bend01.paf"), name));
        EXPECT_TRUE(window.View().IsDataLoaded()) << Text(name);
    }
    WindowUnderTest window;
    Open(window, folder.Path(QStringLiteral("RUN05.PAF")));
    EXPECT_EQ(PaneText(window), QStringLiteral("run 05"));
    Open(window, folder.Path(QStringLiteral("a[*]b.paf")));
    EXPECT_EQ(PaneText(window), QStringLiteral("a[*]b (new)"));
}

TEST(FileOpen, ReportsEveryProblemBeforeTheTitleChangesAndShowsWhatWasRead) {
    const SampleFolder folder;
    WindowUnderTest window;
    QString titleDuringBox;
    window.ui.onMessage = [&] { titleDuringBox = window.Frame().windowTitle(); };
    Open(window, folder.Write(QStringLiteral("half.xml"), kBroken));
    EXPECT_EQ(window.ui.TakeMessages(),
              (Messages{"stop|ERROR|Invalid node name: Odd", "stop|ERROR|Data not found: missing"}));
    EXPECT_EQ(titleDuringBox, QStringLiteral("Tracelyn viewer"));
    EXPECT_EQ(window.Frame().windowTitle(), QStringLiteral("Half- half (new)"));
    EXPECT_NE(window.Graph().GetData().FindGroup(QStringLiteral("G")), nullptr);
}

TEST(FileOpen, OffersToSkipTheRestFromTheTwentyFirstProblemOn) {
    const SampleFolder folder;
    QByteArray document = kBroken;
    document.replace("<Odd/>", QByteArray("<Odd/>").repeated(30));
    const QString path = folder.Write(QStringLiteral("odd.xml"), document);
    for (const auto& [offers, boxes] : {std::pair{1, 21}, {5, 25}, {-1, 31}}) {
        WindowUnderTest window;
        window.ui.offersUntilSkip = offers;
        Open(window, path);
        EXPECT_EQ(std::ssize(window.ui.TakeMessages()), boxes);
        EXPECT_EQ(window.Frame().windowTitle(), QStringLiteral("Half- odd (new)"));
    }
}

TEST(FileOpen, OfWhatCannotBeReadSaysSoAndLeavesTheWindowEmpty) {
    const SampleFolder folder;
    QDir(folder.Path({})).mkdir(QStringLiteral("x.paf"));
    const QString missing = folder.Path(QStringLiteral("gone.xml"));
    struct Case {
        QString path;
        Messages messages;
    };
    for (const auto& [path, messages] :
         {Case{folder.Write(QStringLiteral("bad.paf"), "PK\3\4 no"),
               {"stop|ERROR|Problem expanding analysis file"}},
          Case{folder.Path(QStringLiteral("x.paf")), {"stop|ERROR|Problem expanding analysis file"}},
          Case{folder.Path(QStringLiteral("gone.paf")), {"stop|ERROR|Problem expanding analysis file"}},
          Case{missing, {"stop|ERROR|Xml Parse error: File does not exist"}},
          Case{folder.Write(QStringLiteral("root.xml"), "<analysis/>"),
               {"stop|ERROR|Invalid root name: analysis"}},
          Case{folder.Write(QStringLiteral("note.txt"), "text"), {}},
          Case{folder.Write(QStringLiteral("bare"), "text"), {}}}) {
        WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
        ASSERT_TRUE(window.View().IsDataLoaded());
        Open(window, path);
        EXPECT_EQ(window.ui.TakeMessages(), messages) << Text(path);
        EXPECT_FALSE(window.View().IsDataLoaded());
        EXPECT_FALSE(window.IsEnabled(CommandId::FileClose));
    }
}

TEST(FileOpen, LeavesNothingOfAContainerBehindWhateverHappens) {
    const SampleFolder folder;
    const auto isExpanded = [] {
        return QDirIterator(QDir::tempPath(), {QStringLiteral("tmpandat.bin")}, QDir::Files,
                            QDirIterator::Subdirectories)
            .hasNext();
    };
    CZip zip(folder.Path(QStringLiteral("half.paf")));
    zip.AddFileAs(folder.Write(QStringLiteral("half.xml"), kBroken), QStringLiteral("tmpandat.bin"));
    ASSERT_TRUE(zip.Pack());
    for (const bool throws : {false, true}) {
        WindowUnderTest window;
        int boxes = 0;
        window.ui.onMessage = [&] {
            // The first box tells what the load found; an exception's own box comes after it.
            ++boxes;
            EXPECT_FALSE(isExpanded());
            if (throws && boxes == 1)
                throw std::runtime_error("from inside the load");
        };
        Open(window, folder.Path(QStringLiteral("half.paf")));
        EXPECT_EQ(boxes, 2);
        EXPECT_FALSE(isExpanded());
        EXPECT_EQ(window.ui.TakeMessages().back(),
                  throws ? "stop|Tracelyn|File not loaded.\nError during load operation."
                         : "stop|ERROR|Data not found: missing");
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
}

TEST(FileSteps, FollowTheSetAndKeepExpandedGroups) {
    const SampleFolder folder;
    WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
    EXPECT_FALSE(window.IsEnabled(CommandId::PreviousFile));
    window.Key(Qt::Key_2);
    window.Key(Qt::Key_F3);
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 02"));
    EXPECT_FALSE(window.Graph().GetData().FindGroup(QStringLiteral("Speed"))->m_bExpanded);
    window.Key(Qt::Key_F3);
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 03"));
    EXPECT_FALSE(window.IsEnabled(CommandId::NextFile));
    window.Key(Qt::Key_F3);
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 03"));
    window.Key(Qt::Key_F2);
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 02"));
    EXPECT_TRUE(window.IsEnabled(CommandId::NextFile));
}

TEST(FileClose, EmptiesTheWindowAndKeepsTheTitle) {
    const SampleFolder folder;
    WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
    window.Choose(CommandId::FileClose);
    EXPECT_FALSE(window.View().IsDataLoaded());
    EXPECT_EQ(window.Frame().windowTitle(), QStringLiteral("S235 2.0 mm, 90 deg, V16"));
    EXPECT_EQ(PaneText(window), QStringLiteral("bend 01")) << "the label keeps its text";
    EXPECT_FALSE(window.IsEnabled(CommandId::FileClose));
    EXPECT_EQ(Say(window, CommandId::FileSave, folder.Path(QStringLiteral("copy.paf"))), kNotSaved);
}

TEST(FileSave, CopiesTheFileAndNeverOverwrites) {
    const SampleFolder folder;
    WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
    const QString target = folder.Path(QStringLiteral("Kopie ü.paf"));
    EXPECT_EQ(Say(window, CommandId::FileSave, target), "info|Tracelyn|File '@' was saved successfully");
    EXPECT_EQ(ContentOf(target), ContentOf(folder.Path(QStringLiteral("bend01.paf"))));
    const FileRequest& request = window.ui.requests.front();
    EXPECT_EQ(request.title + request.directory, QStringLiteral("Save.../"));
    EXPECT_EQ(request.fileName + request.defaultExtension, QStringLiteral("bend01paf"));

    folder.Write(QStringLiteral("Kopie ü.paf"), "kept");
    EXPECT_EQ(Say(window, CommandId::FileSave, target), kNotSaved);
    EXPECT_EQ(ContentOf(target), QByteArray("kept"));
    EXPECT_EQ(Say(window, CommandId::FileSave, QStringLiteral("/nowhere/x.paf")), kNotSaved);
    EXPECT_EQ(Say(window, CommandId::FileSave, std::nullopt), "") << "cancelled";
}

TEST(FileSave, ExportsForACsvName) {
    const SampleFolder folder;
    WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
    const QString saved = folder.Write(QStringLiteral("saved.csv"), "old");
    const QString exported = folder.Path(QStringLiteral("exported.csv"));
    const QString upper = folder.Path(QStringLiteral("upper.CSV"));
    EXPECT_EQ(Say(window, CommandId::FileSave, saved), kCreated);
    EXPECT_EQ(Say(window, CommandId::SaveCsv, exported), kCreated);
    EXPECT_EQ(window.ui.requests.back().directory, folder.Path(QStringLiteral("bend01.paf")));
    EXPECT_EQ(window.ui.requests.back().defaultExtension, QStringLiteral("csv"));
    EXPECT_GT(ContentOf(saved).size(), 100000);
    EXPECT_EQ(ContentOf(saved), ContentOf(exported));
    Say(window, CommandId::FileSave, upper);
    EXPECT_EQ(ContentOf(upper), ContentOf(folder.Path(QStringLiteral("bend01.paf")))) << "only csv exports";
    EXPECT_EQ(Say(window, CommandId::SaveCsv, folder.Path(QStringLiteral("no/such/x.csv"))), kCreated)
        << "also where nothing could be opened";
}

TEST(FileSave, SaysWhenItCannotWrite) {
    if (!QFileInfo::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "no full disk on this system";
    const SampleFolder folder;
    WindowUnderTest window({folder.Path(QStringLiteral("bend01.paf"))});
    const QString full = folder.Path(QStringLiteral("full.csv"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), full));
    EXPECT_EQ(Say(window, CommandId::SaveCsv, full),
              "stop|Tracelyn|File not exported.\nError during write operation.");
    EXPECT_EQ(Say(window, CommandId::FileSave, full),
              "stop|Tracelyn|File not saved.\nError during write operation.");
    EXPECT_EQ(Say(window, CommandId::SaveCsv, QStringLiteral("/proc/self/comm")),
              "stop|Tracelyn|File not exported.\nError during write operation.")
        << "a file that could only be written over";
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor has ended";
}

TEST(FileLoad, SurvivesRepaintsAndCloseWhileABoxIsOpen) {
    const SampleFolder folder;
    WindowUnderTest window;
    window.ui.onMessage = [&] {
        window.Client()->repaint();
        window.Settle();
        window.Frame().close();
    };
    Open(window, folder.Write(QStringLiteral("half.xml"), kBroken));
    EXPECT_EQ(window.ui.TakeMessages().size(), 2U);
    EXPECT_FALSE(window.Frame().isVisible());
}
