#include "ScratchFolder.h"

#include "PrivateFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifndef _WIN32

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using support::ScratchFolder;

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
    // A process that is killed while its folder holds a file in a folder.
    static void LeaveOneBehind() {
        EXPECT_EXIT(
            {
                const ScratchFolder folder;
                QDir().mkdir(folder.GetPath() + "sub");
                Write(folder.GetPath() + "sub/file");
                std::raise(SIGKILL);
            },
            testing::KilledBySignal(SIGKILL), "");
    }

    const QByteArray m_before = qgetenv("TMPDIR");
    const QTemporaryDir m_parent;
};

TEST_F(Scratch, IsTheOwnersAloneAndGoesWithItsObject) {
    {
        const ScratchFolder one;
        const ScratchFolder other;
        ASSERT_TRUE(one.IsValid() && other.IsValid());
        EXPECT_NE(one.GetPath(), other.GetPath());
        struct stat status = {};
        ASSERT_EQ(::stat(QFile::encodeName(one.GetPath()), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U);
        EXPECT_TRUE(QDir(one.GetPath()).mkpath("a/b") && Write(one.GetPath() + "a/b/file"));
    }
    EXPECT_EQ(Entries(), QStringList());
    qputenv("TMPDIR", "/nowhere");
    EXPECT_FALSE(ScratchFolder().IsValid());
}

TEST_F(Scratch, OfAKilledProcessIsRemovedByTheNextAndThatOfALivingOneIsNot) {
    const ScratchFolder living;
    ASSERT_TRUE(Write(living.GetPath() + "file"));
    // Two files of the living owner: the folder, and its lock.
    EXPECT_EQ(Entries().size(), 2);
    LeaveOneBehind();
    EXPECT_EQ(Entries().size(), 4);
    EXPECT_EXIT(
        {
            ScratchFolder::RemoveStale();
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(Entries().size(), 2);
    EXPECT_TRUE(QFile::exists(living.GetPath() + "file"));
}

// Lock files as a killed owner may have left them: cut short, by a process id that another program has now,
// on another machine or in a container.
TEST_F(Scratch, IsRemovedWhenItsLockIsFreeWhateverTheLockFileSays) {
    const QString victim = m_parent.filePath("victim");
    ASSERT_TRUE(QDir().mkpath(victim) && Write(victim + "/file"));
    using Case = std::tuple<const char*, int, bool>; // with the age in seconds
    for (const auto& [lock, age, removed] :
         {Case{"1\ntracelyn\n\n\n\n", 0, true}, Case{"1\ntracelyn\nelsewhere\n\n\n", 0, false},
          Case{"1\ntracelyn\nelsewhere\n\n\n", 120, true}, Case{"", 0, false}, Case{"", 120, true}}) {
        const QString path = *support::PrivateTemporaryFolder() + "tracelyn-run-1";
        QFile file(path + ".lock");
        ASSERT_TRUE(QDir().mkpath(path) && Write(path + "/file") && file.open(QIODevice::WriteOnly));
        QFile::link(victim, path + "/link");
        file.write(lock);
        file.flush();
        file.setFileTime(QDateTime::currentDateTime().addSecs(-age), QFileDevice::FileModificationTime);
        file.close();
        ScratchFolder::RemoveStale();
        EXPECT_EQ(Entries().isEmpty(), removed) << lock << ' ' << age;
        EXPECT_TRUE(QFile::exists(victim + "/file"));
    }
}

} // namespace

#endif
