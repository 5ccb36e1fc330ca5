#include "support/ScratchFolder.h"

#include <QDir>
#include <QFile>
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
    ~PrivateFolder() override { qputenv("TMPDIR", m_before); }

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
    qputenv("TMPDIR", QDir::current().relativeFilePath(m_parent.path()).toUtf8());
    EXPECT_EQ(PrivateTemporaryFolder(), m_expected + '/') << "absolute also below a relative folder";
}

TEST_F(PrivateFolder, RefusesAnythingElseUnderItsName) {
    ASSERT_TRUE(QDir().mkdir(m_expected + "-other"));
    ASSERT_TRUE(QFile::link(m_expected + "-other", m_expected));
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "symbolic link";
    ASSERT_TRUE(QFile::remove(m_expected));
    QFile file(m_expected);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(::chmod(m_path.constData(), 0600), 0);
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "file";
    qputenv("TMPDIR", m_path);
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << "cannot be made";
}

TEST_F(PrivateFolder, RefusesAFolderThatOthersCanEnterOrOwn) {
    ASSERT_TRUE(PrivateTemporaryFolder());
    for (const mode_t mode : {0710U, 0720U, 0701U, 0777U}) {
        ASSERT_EQ(::chmod(m_path.constData(), mode), 0);
        EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt) << std::oct << mode;
    }
    ASSERT_EQ(::chmod(m_path.constData(), 0700), 0);
    if (::chown(m_path.constData(), 12345, static_cast<gid_t>(-1)) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    EXPECT_EQ(PrivateTemporaryFolder(), std::nullopt);
}

#endif
