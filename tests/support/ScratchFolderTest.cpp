// The user's private temporary folder, and the scratch folders in it.
#include "support/ScratchFolder.h"
#include "Testing.h"

#include <QCoreApplication>
#include <QProcess>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

using support::CScratchFolder;
using support::PrivateTemporaryFolder;

namespace {

bool WriteTo(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("text") == 4;
}

// Of the environment's temporary folder.
class Temporary : public testing::Test, protected TestFolder {
protected:
    Temporary() { UseTemporaryFolder(Folder()); }
    ~Temporary() override { UseTemporaryFolder(m_before); }

    const QString m_before = QDir::tempPath();
};

class Scratch : public Temporary {
protected:
    // In the private temporary folder.
    static QStringList Scratches() {
        return QDir(*PrivateTemporaryFolder())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    // Starts this program again, to run one of the disabled tests below with this temporary folder.
    static void Start(QProcess& process, const char* test) {
        const QString program = QString::fromStdString(testing::internal::GetArgvs().front());
        process.start(program,
                      {"--gtest_also_run_disabled_tests", QString("--gtest_filter=Child.DISABLED_") + test});
    }
    static int CodeOf(QProcess& process) { return process.waitForFinished(60'000) ? process.exitCode() : -1; }

    int m_argc = 0;
    QCoreApplication m_Application{m_argc, nullptr};
};

} // namespace

TEST(Child, DISABLED_EndsInTheMiddle) {
    const CScratchFolder folder;
    QDir().mkdir(folder.GetPath() + "sub");
    WriteTo(folder.GetPath() + "sub/file");
    QFile::link(QDir::tempPath() + "/victim", folder.GetPath() + "link");
    std::_Exit(7);
}

TEST(Child, DISABLED_MakesFolders) {
    for (int round = 0; round < 200; ++round) {
        const CScratchFolder folder;
        const QString file = folder.GetPath() + "file";
        ASSERT_TRUE(folder.IsValid() && WriteTo(file) && CScratchFolder().IsValid() && QFile::exists(file));
    }
}

TEST_F(Scratch, HasANameOfItsOwnAndGoesWithItsObject) {
    {
        const CScratchFolder one;
        const CScratchFolder other;
        ASSERT_TRUE(one.IsValid() && other.IsValid());
        EXPECT_NE(one.GetPath(), other.GetPath());
        EXPECT_TRUE(one.GetPath().endsWith(QDir::separator()) && QDir::isAbsolutePath(one.GetPath()));
        EXPECT_TRUE(QDir(one.GetPath()).mkpath("a/b") && WriteTo(one.GetPath() + "a/b/file"));
        EXPECT_EQ(support::CFolderLock::Take(one.GetPath()), nullptr);
    }
    EXPECT_EQ(Scratches(), QStringList());
    UseTemporaryFolder(Path("nowhere"));
    EXPECT_FALSE(CScratchFolder().IsValid());
}

TEST_F(Scratch, OfAnEndedProcessIsRemovedByTheNextAndThatOfALivingOneIsNot) {
    const QString parent = *PrivateTemporaryFolder();
    ASSERT_TRUE(QDir().mkpath(Path("victim")));
    const QString victim = Write("victim/file");
    const CScratchFolder living;
    ASSERT_TRUE(WriteTo(living.GetPath() + "file"));
    QProcess process;
    Start(process, "EndsInTheMiddle");
    ASSERT_EQ(CodeOf(process), 7);
    // As a process leaves it that is killed before it can lock its folder.
    ASSERT_TRUE(QDir().mkpath(parent + "tracelyn-run-1"));
    EXPECT_EQ(QDir(parent).entryList({"tracelyn-run-*"}).size(), 3);
    CScratchFolder::RemoveStale();
    EXPECT_EQ(QDir(parent).entryList({"tracelyn-run-*"}).size(), 1);
    EXPECT_TRUE(QFile::exists(living.GetPath() + "file") && QFile::exists(victim));
}

// Every process removes what is stale while others have only just made their folders.
TEST_F(Scratch, ManyProcessesAtTheSameMomentKeepTheirFolders) {
    std::array<QProcess, 8> children;
    for (QProcess& child : children)
        Start(child, "MakesFolders");
    for (QProcess& child : children)
        EXPECT_EQ(CodeOf(child), 0) << child.readAllStandardOutput().toStdString();
    EXPECT_EQ(Scratches(), QStringList());
}

#ifdef _WIN32

TEST_F(Temporary, IsTheUsersOwn) {
    EXPECT_EQ(PrivateTemporaryFolder(), QDir::toNativeSeparators(Folder()) + '\\');
}

#else

namespace {

class PrivateFolder : public Temporary {
protected:
    static unsigned ModeOf(const QString& path) {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path), &status), 0);
        return status.st_mode & 0777U;
    }

    const QString m_private = Path(QStringLiteral("tracelyn-%1").arg(::geteuid()));
    const QByteArray m_path = m_private.toUtf8();
};

} // namespace

TEST_F(PrivateFolder, IsMadeForTheUserAloneAndFoundAgain) {
    EXPECT_EQ(PrivateTemporaryFolder(), m_private + '/');
    EXPECT_EQ(ModeOf(m_private), 0700U);
    const CScratchFolder folder;
    EXPECT_EQ(ModeOf(folder.GetPath()), 0700U);
    UseTemporaryFolder(QDir::current().relativeFilePath(Folder()));
    EXPECT_EQ(PrivateTemporaryFolder(), m_private + '/') << "absolute also below a relative folder";
}

TEST_F(PrivateFolder, RefusesAnythingElseUnderItsName) {
    ASSERT_TRUE(QDir().mkdir(m_private + "-other") && QFile::link(m_private + "-other", m_private));
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "symbolic link";
    ASSERT_TRUE(QFile::remove(m_private) && WriteTo(m_private));
    ASSERT_EQ(::chmod(m_path.constData(), 0700), 0);
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "file";
    ASSERT_TRUE(QFile::remove(m_private) && PrivateTemporaryFolder());
    for (const mode_t mode : {0710U, 0701U}) {
        ASSERT_EQ(::chmod(m_path.constData(), mode), 0);
        EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << std::oct << mode;
    }
    ASSERT_EQ(::chmod(m_path.constData(), 0700), 0);
    if (::chown(m_path.constData(), 12345, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt);
}

#endif
