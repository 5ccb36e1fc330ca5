// The user's private temporary folder, and the scratch folders in it.
#include "support/ScratchFolder.h"
#include "Testing.h"

#ifndef _WIN32

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using support::CScratchFolder;
using support::PrivateTemporaryFolder;

namespace {

unsigned ModeOf(const QString& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(QFile::encodeName(path), &status), 0);
    return status.st_mode & 0777U;
}

bool WriteTo(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("text") == 4;
}

// Of the environment's temporary folder.
class Temporary : public testing::Test, protected TestFolder {
protected:
    Temporary() { qputenv("TMPDIR", Folder().toUtf8()); }
    ~Temporary() override { qputenv("TMPDIR", m_before); }

    const QByteArray m_before = qgetenv("TMPDIR");
    const QString m_private = Path(QStringLiteral("tracelyn-%1").arg(::geteuid()));
    const QByteArray m_path = m_private.toUtf8();
};

class Scratch : public Temporary {
protected:
    // In the private temporary folder.
    static QStringList Scratches() {
        return QDir(*PrivateTemporaryFolder())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

} // namespace

TEST_F(Temporary, IsMadeForTheUserAloneAndFoundAgain) {
    EXPECT_EQ(PrivateTemporaryFolder(), m_private + '/');
    EXPECT_EQ(ModeOf(m_private), 0700U);
    qputenv("TMPDIR", QDir::current().relativeFilePath(Folder()).toUtf8());
    EXPECT_EQ(PrivateTemporaryFolder(), m_private + '/') << "absolute also below a relative folder";
}

TEST_F(Temporary, RefusesAnythingElseUnderItsName) {
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

TEST_F(Scratch, IsTheOwnersAloneAndGoesWithItsObject) {
    {
        const CScratchFolder one;
        const CScratchFolder other;
        ASSERT_TRUE(one.IsValid() && other.IsValid());
        EXPECT_NE(one.GetPath(), other.GetPath());
        EXPECT_EQ(ModeOf(one.GetPath()), 0700U);
        EXPECT_TRUE(QDir(one.GetPath()).mkpath("a/b") && WriteTo(one.GetPath() + "a/b/file"));
    }
    // No file can be opened, so none can be locked.
    EXPECT_EXIT(
        {
            rlimit none{};
            none.rlim_cur = none.rlim_max = 3;
            ::setrlimit(RLIMIT_NOFILE, &none);
            std::_Exit(CScratchFolder().IsValid() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(Scratches(), QStringList());
    qputenv("TMPDIR", "/nowhere");
    EXPECT_FALSE(CScratchFolder().IsValid());
}

TEST_F(Scratch, OfAKilledProcessIsRemovedByTheNextAndThatOfALivingOneIsNot) {
    ASSERT_TRUE(QDir().mkpath(Path("victim")));
    const QString victim = Write("victim/file");
    const CScratchFolder living;
    ASSERT_TRUE(WriteTo(living.GetPath() + "file"));
    EXPECT_EXIT(
        {
            const CScratchFolder folder;
            QDir().mkdir(folder.GetPath() + "sub");
            WriteTo(folder.GetPath() + "sub/file");
            QFile::link(Path("victim"), folder.GetPath() + "link");
            std::raise(SIGKILL);
        },
        testing::KilledBySignal(SIGKILL), "");
    // As a process leaves it that is killed before it can lock its folder.
    ASSERT_TRUE(QDir().mkpath(*PrivateTemporaryFolder() + "tracelyn-run-1"));
    EXPECT_EQ(Scratches().size(), 3);
    CScratchFolder::RemoveStale();
    EXPECT_EQ(Scratches().size(), 1);
    EXPECT_TRUE(QFile::exists(living.GetPath() + "file") && QFile::exists(victim));
}

// Every process removes what is stale while others have only just made their folders.
TEST_F(Scratch, ManyProcessesAtTheSameMomentKeepTheirFolders) {
    std::array<pid_t, 8> children{};
    for (pid_t& child : children) {
        child = ::fork();
        ASSERT_GE(child, 0);
        if (child != 0)
            continue;
        for (int round = 0; round < 400; ++round) {
            const CScratchFolder folder;
            const QString file = folder.GetPath() + "file";
            if (!folder.IsValid() || !WriteTo(file) || !CScratchFolder().IsValid() || !QFile::exists(file))
                std::_Exit(1);
        }
        std::_Exit(0);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Scratches(), QStringList());
}

#endif
