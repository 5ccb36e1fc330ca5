#include "support/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifndef _WIN32

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using support::CScratchFolder;

namespace {

class Scratch : public testing::Test {
protected:
    Scratch() { qputenv("TMPDIR", m_parent.path().toUtf8()); }
    ~Scratch() override { qputenv("TMPDIR", m_before); }

    // Everything in the private temporary folder.
    static QStringList Entries() {
        return QDir(*support::PrivateTemporaryFolder())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static bool Write(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write("text") == 4;
    }
    static void LimitOpenFiles(rlim_t count) {
        const rlimit limit = {count, count};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    // A process that is killed while its folder holds a file in a folder, and a link.
    static void LeaveOneBehind(const QString& linked) {
        EXPECT_EXIT(
            {
                const CScratchFolder folder;
                QDir().mkdir(folder.GetPath() + "sub");
                Write(folder.GetPath() + "sub/file");
                QFile::link(linked, folder.GetPath() + "link");
                std::raise(SIGKILL);
            },
            testing::KilledBySignal(SIGKILL), "");
    }

    const QByteArray m_before = qgetenv("TMPDIR");
    const QTemporaryDir m_parent;
};

TEST_F(Scratch, IsTheOwnersAloneAndGoesWithItsObject) {
    {
        const CScratchFolder one;
        const CScratchFolder other;
        ASSERT_TRUE(one.IsValid() && other.IsValid());
        EXPECT_NE(one.GetPath(), other.GetPath());
        struct stat status = {};
        ASSERT_EQ(::stat(QFile::encodeName(one.GetPath()), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U);
        EXPECT_TRUE(QDir(one.GetPath()).mkpath("a/b") && Write(one.GetPath() + "a/b/file"));
    }
    EXPECT_EQ(Entries(), QStringList());
    // No file can be opened, so none can be locked.
    EXPECT_EXIT(
        {
            LimitOpenFiles(3);
            std::_Exit(CScratchFolder().IsValid() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(Entries(), QStringList());
    qputenv("TMPDIR", "/nowhere");
    EXPECT_FALSE(CScratchFolder().IsValid());
}

TEST_F(Scratch, OfAKilledProcessIsRemovedByTheNextAndThatOfALivingOneIsNot) {
    const QString victim = m_parent.filePath("victim");
    ASSERT_TRUE(QDir().mkpath(victim) && Write(victim + "/file"));
    const CScratchFolder living;
    ASSERT_TRUE(Write(living.GetPath() + "file"));
    LeaveOneBehind(victim);
    // As a process leaves it that is killed before it can lock its folder.
    ASSERT_TRUE(QDir().mkpath(*support::PrivateTemporaryFolder() + "tracelyn-run-1"));
    EXPECT_EQ(Entries().size(), 3);
    EXPECT_EXIT(
        {
            CScratchFolder::RemoveStale();
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(Entries().size(), 1);
    EXPECT_TRUE(QFile::exists(living.GetPath() + "file"));
    EXPECT_TRUE(QFile::exists(victim + "/file"));
}

// Every process removes what is stale while others have only just made their folders.
TEST_F(Scratch, ManyProcessesAtTheSameMomentKeepTheirFolders) {
    constexpr int kProcesses = 8;
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            int lost = 0;
            for (int round = 0; round < 50; ++round) {
                const CScratchFolder folder;
                const QString file = folder.GetPath() + "file";
                lost += folder.IsValid() && Write(file) && CScratchFolder().IsValid() && QFile::exists(file)
                            ? 0
                            : 1;
            }
            std::_Exit(lost);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Entries(), QStringList());
}

} // namespace

#endif
