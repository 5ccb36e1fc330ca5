// The commands on files, with the words they say and the order they say them in.
#include "WindowTesting.h"
#include "reader/container/zip.h"
#include "render/Graph.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QLabel>

namespace {

using Messages = std::vector<std::string>;

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
    return said.replace(path.value_or("(none)"), "@").toStdString();
}

const std::string kNotSaved = "info|Tracelyn|File '@' is not saved!\nFile already exists!";
const std::string kCreated = "info|Tracelyn|File '@' was created successfully";

struct Files : ::testing::Test, SampleFolder {};

QString PaneText(WindowUnderTest& window) {
    return window.Frame().findChild<QLabel*>("fileLabel")->text();
}

const QByteArray kBroken =
    R"(<Analysis Name="Half"><DataDefinition><IndexSet Name="T"><Unit Name="ms"/></IndexSet>
<VariablesDefinitions><Odd/><TypedData Name="a" Type="Float" Description="A"/></VariablesDefinitions></DataDefinition>
<Groups><Group Name="G"><Line DataName="a"/><Line DataName="missing"/></Group></Groups></Analysis>)";

} // namespace

TEST_F(Files, OpenLoadsTheFileAndShowsItsNameEverywhere) {
    WindowUnderTest window;
    TakeFileJustOpened();
    Open(window, Path("bend02.paf"));
    EXPECT_TRUE(window.View().IsDataLoaded());
    EXPECT_EQ(window.Frame().windowTitle(), "S235 4.0 mm, 135 deg, V32- bend 02");
    EXPECT_EQ(PaneText(window), "bend 02");
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
    EXPECT_EQ(window.ui.requests.back().directory, Path("bend02.paf"));
    EXPECT_TRUE(window.View().IsDataLoaded()) << "cancelling changes nothing";
}

TEST_F(Files, OpenReportsEveryProblemBeforeTheTitleChangesAndShowsWhatWasRead) {
    WindowUnderTest window;
    QString titleDuringBox;
    window.ui.onMessage = [&] { titleDuringBox = window.Frame().windowTitle(); };
    Open(window, Write("half.xml", kBroken));
    EXPECT_EQ(window.ui.TakeMessages(),
              (Messages{"stop|ERROR|Invalid node name: Odd", "stop|ERROR|Data not found: missing"}));
    EXPECT_EQ(titleDuringBox, "Tracelyn viewer");
    EXPECT_EQ(window.Frame().windowTitle(), "Half- half (new)");
    EXPECT_NE(window.Graph().GetData().FindGroup("G"), nullptr);
}

TEST_F(Files, OpenOffersToSkipTheRestFromTheTwentyFirstProblemOn) {
    QByteArray document = kBroken;
    document.replace("<Odd/>", QByteArray("<Odd/>").repeated(30));
    const QString path = Write("odd.xml", document);
    for (const auto& [offers, boxes] : {std::pair{1, 21}, {5, 25}, {-1, 31}}) {
        WindowUnderTest window;
        window.ui.offersUntilSkip = offers;
        Open(window, path);
        EXPECT_EQ(std::ssize(window.ui.TakeMessages()), boxes);
        EXPECT_EQ(window.Frame().windowTitle(), "Half- odd (new)");
    }
}

TEST_F(Files, OpenOfWhatCannotBeReadSaysSoAndLeavesTheWindowEmpty) {
    QDir(Path({})).mkdir("x.paf");
    const Messages noContainer{"stop|ERROR|Problem expanding analysis file"};
    using Case = std::pair<QString, Messages>;
    for (const auto& [path, messages] :
         {Case{Write("bad.paf", "PK\3\4 no"), noContainer}, Case{Path("x.paf"), noContainer},
          Case{Path("gone.paf"), noContainer},
          Case{Path("gone.xml"), {"stop|ERROR|Xml Parse error: File does not exist"}},
          Case{Write("root.xml", "<analysis/>"), {"stop|ERROR|Invalid root name: analysis"}},
          Case{Write("note.txt", "text"), {}}, Case{Write("bare", "text"), {}}}) {
        WindowUnderTest window({Path("bend01.paf")});
        ASSERT_TRUE(window.View().IsDataLoaded());
        Open(window, path);
        EXPECT_EQ(window.ui.TakeMessages(), messages) << path.toStdString();
        EXPECT_FALSE(window.View().IsDataLoaded());
        EXPECT_FALSE(window.IsEnabled(CommandId::FileClose));
    }
}

TEST_F(Files, OpenLeavesNothingOfAContainerBehindWhateverHappens) {
    const auto isExpanded = [] {
        return QDirIterator(QDir::tempPath(), {"tmpandat.bin"}, QDir::Files, QDirIterator::Subdirectories)
            .hasNext();
    };
    CZip zip(Path("half.paf"));
    zip.AddFileAs(Write("half.xml", kBroken), "tmpandat.bin");
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
        Open(window, Path("half.paf"));
        EXPECT_EQ(boxes, 2);
        EXPECT_FALSE(isExpanded());
        EXPECT_EQ(window.ui.TakeMessages().back(),
                  throws ? "stop|Tracelyn|File not loaded.\nError during load operation."
                         : "stop|ERROR|Data not found: missing");
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
}

TEST_F(Files, StepsFollowTheSetAndKeepExpandedGroups) {
    WindowUnderTest window({Path("bend01.paf")});
    window.Key(Qt::Key_2);
    using Case = std::pair<Qt::Key, int>;
    for (const auto& [key, number] : {Case{Qt::Key_F2, 1}, Case{Qt::Key_F3, 2}, Case{Qt::Key_F3, 3},
                                      Case{Qt::Key_F3, 3}, Case{Qt::Key_F2, 2}}) {
        window.Key(key);
        EXPECT_EQ(PaneText(window), QString("bend 0%1").arg(number));
        EXPECT_EQ(window.IsEnabled(CommandId::PreviousFile), number > 1);
        EXPECT_EQ(window.IsEnabled(CommandId::NextFile), number < 3);
        EXPECT_FALSE(window.Graph().GetData().FindGroup("Speed")->m_bExpanded);
    }
}

TEST_F(Files, StepsShowTheWholeRecordingAndKeepTheFixedCursor) {
    const auto screens = [this](int zooms) {
        WindowUnderTest window({Path("bend01.paf")});
        const auto fixed = static_cast<float>(window.Cursor());
        window.Key(Qt::Key_Return);
        for (int i = 0; i < zooms; ++i)
            window.Key(Qt::Key_Up);
        window.Key(Qt::Key_F3);
        EXPECT_FALSE(window.IsEnabled(CommandId::ZoomOut));
        const QImage whole = window.Screen();
        const int column = window.Graph().GetCanvas().GetTimeAxis().WorldToPixelX(fixed);
        EXPECT_EQ(whole.pixelColor(column, whole.height() - 2), QColor(64, 64, 128));
        window.Key(Qt::Key_Up);
        return std::pair(whole, window.Screen());
    };
    EXPECT_EQ(screens(0), screens(2)) << "the next zoom begins at 1, too";
}

TEST_F(Files, CloseEmptiesTheWindowAndKeepsTheTitle) {
    WindowUnderTest window({Path("bend01.paf")});
    window.Choose(CommandId::FileClose);
    EXPECT_FALSE(window.View().IsDataLoaded());
    EXPECT_EQ(window.Frame().windowTitle(), "S235 2.0 mm, 90 deg, V16");
    EXPECT_EQ(PaneText(window), "bend 01") << "the label keeps its text";
    EXPECT_FALSE(window.IsEnabled(CommandId::FileClose));
    EXPECT_EQ(Say(window, CommandId::FileSave, Path("copy.paf")), kNotSaved);
}

TEST_F(Files, SaveCopiesTheFileAndNeverOverwrites) {
    WindowUnderTest window({Path("bend01.paf")});
    const QString target = Path("Kopie ü.paf");
    EXPECT_EQ(Say(window, CommandId::FileSave, target), "info|Tracelyn|File '@' was saved successfully");
    EXPECT_EQ(Read(target), Read(Path("bend01.paf")));
    const FileRequest& request = window.ui.requests.front();
    EXPECT_EQ(request.title + request.directory, "Save.../");
    EXPECT_EQ(request.fileName + request.defaultExtension, "bend01paf");

    Write("Kopie ü.paf", "kept");
    EXPECT_EQ(Say(window, CommandId::FileSave, target), kNotSaved);
    EXPECT_EQ(Read(target), "kept");
    EXPECT_EQ(Say(window, CommandId::FileSave, "/nowhere/x.paf"), kNotSaved);
    // Like a stick that is pulled out: no file is held open.
    ASSERT_TRUE(QFile::remove(Path("bend01.paf")));
    EXPECT_EQ(Say(window, CommandId::FileSave, Path("late.paf")), kNotSaved);
    EXPECT_EQ(Say(window, CommandId::SaveCsv, Path("late.csv")), kCreated);
    EXPECT_GT(Read(Path("late.csv")).size(), 100000);
    EXPECT_EQ(Say(window, CommandId::FileSave, std::nullopt), "") << "cancelled";
}

TEST_F(Files, SaveExportsForACsvName) {
    WindowUnderTest window({Path("bend01.paf")});
    const QString saved = Write("saved.csv", "old");
    const QString exported = Path("exported.csv");
    const QString upper = Path("upper.CSV");
    EXPECT_EQ(Say(window, CommandId::FileSave, saved), kCreated);
    EXPECT_EQ(Say(window, CommandId::SaveCsv, exported), kCreated);
    EXPECT_EQ(window.ui.requests.back().directory, Path("bend01.paf"));
    EXPECT_EQ(window.ui.requests.back().defaultExtension, "csv");
    EXPECT_GT(Read(saved).size(), 100000);
    EXPECT_EQ(Read(saved), Read(exported));
    Say(window, CommandId::FileSave, upper);
    EXPECT_EQ(Read(upper), Read(Path("bend01.paf"))) << "only csv exports";
    EXPECT_EQ(Say(window, CommandId::SaveCsv, Path("no/such/x.csv")), kCreated)
        << "also where nothing could be opened";
}

TEST_F(Files, SaveNeverPutsATableInThePlaceOfTheRecording) {
    WindowUnderTest window({Path("bend01.paf")});
    const QString link = Path("link.csv");
    ASSERT_TRUE(LinkTo(Path("bend01.paf"), link));
    const std::string refused = "stop|Tracelyn|File not exported.\n'@' is the opened recording.";
    EXPECT_EQ(Say(window, CommandId::SaveCsv, Path("bend01.paf")), refused);
    EXPECT_EQ(Say(window, CommandId::SaveCsv, Path("./bend01.paf")), refused);
    EXPECT_EQ(Say(window, CommandId::FileSave, link), refused);
    EXPECT_TRUE(Read(Path("bend01.paf")) == Read(SAMPLES_DIR "/bend01.paf"));
}

TEST_F(Files, SaveSaysWhenItCannotWrite) {
    if (!QFileInfo::exists("/dev/full"))
        GTEST_SKIP() << "no full disk on this system";
    WindowUnderTest window({Path("bend01.paf")});
    const QString full = Path("full.csv");
    ASSERT_TRUE(QFile::link("/dev/full", full));
    // The last file could only be written over.
    using Case = std::tuple<CommandId, QString, const char*>;
    for (const auto& [id, path, what] :
         {Case{CommandId::SaveCsv, full, "exported"}, Case{CommandId::FileSave, full, "saved"},
          Case{CommandId::SaveCsv, "/proc/self/comm", "exported"}})
        EXPECT_EQ(Say(window, id, path),
                  std::string("stop|Tracelyn|File not ") + what + ".\nError during write operation.");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor has ended";
}

TEST_F(Files, LoadSurvivesRepaintsAndCloseWhileABoxIsOpen) {
    WindowUnderTest window;
    window.ui.onMessage = [&] {
        window.Client()->repaint();
        window.Settle();
        window.Frame().close();
    };
    Open(window, Write("half.xml", kBroken));
    EXPECT_EQ(window.ui.TakeMessages().size(), 2U);
    EXPECT_FALSE(window.Frame().isVisible());
}
