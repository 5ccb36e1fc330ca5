#include "PrivateFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifndef _WIN32

#include <sys/stat.h>
#include <unistd.h>

using support::PrivateTemporaryFolder;

namespace {

class PrivateFolder : public testing::Test {
protected:
    PrivateFolder() { qputenv("TMPDIR", m_parent.path().toUtf8()); }
    ~PrivateFolder() override {
        if (m_hadVariable)
            qputenv("TMPDIR", m_before);
        else
            qunsetenv("TMPDIR");
    }

    const bool m_hadVariable = qEnvironmentVariableIsSet("TMPDIR");
    const QByteArray m_before = qgetenv("TMPDIR");
    const QTemporaryDir m_parent;
    const QString m_expected = m_parent.filePath(QStringLiteral("tracelyn-%1").arg(::geteuid()));
    const QByteArray m_path = m_expected.toUtf8();
};

} // namespace

TEST_F(PrivateFolder, IsMadeForTheUserAloneAndFoundAgain) {
    EXPECT_EQ(PrivateTemporaryFolder(), m_expected + '/');
    struct stat status = {};
    ASSERT_EQ(::stat(m_path.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_EQ(PrivateTemporaryFolder(), m_expected + '/');
}

TEST_F(PrivateFolder, IsAbsoluteAlsoBelowARelativeFolder) {
    qputenv("TMPDIR", QDir::current().relativeFilePath(m_parent.path()).toUtf8());
    EXPECT_EQ(PrivateTemporaryFolder(), m_expected + '/');
}

TEST_F(PrivateFolder, RefusesAnythingElseUnderItsName) {
    const QByteArray other = m_parent.filePath("other").toUtf8();
    ASSERT_EQ(::mkdir(other.constData(), 0700), 0);
    ASSERT_EQ(::symlink(other.constData(), m_path.constData()), 0);
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "symbolic link";
    ASSERT_EQ(::unlink(m_path.constData()), 0);

    QFile file(m_expected);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    ASSERT_EQ(::chmod(m_path.constData(), 0600), 0);
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "file";
}

TEST_F(PrivateFolder, RefusesAFolderThatOthersCanEnter) {
    ASSERT_TRUE(PrivateTemporaryFolder());
    for (const mode_t mode : {0710U, 0720U, 0701U, 0777U}) {
        ASSERT_EQ(::chmod(m_path.constData(), mode), 0);
        EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << std::oct << mode;
    }
}

TEST_F(PrivateFolder, RefusesAnotherOwner) {
    ASSERT_TRUE(PrivateTemporaryFolder());
    if (::chown(m_path.constData(), 12345, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt);
}

TEST_F(PrivateFolder, SaysWhenItCannotBeMade) {
    qputenv("TMPDIR", m_parent.filePath("missing").toUtf8());
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt);
}

#endif
