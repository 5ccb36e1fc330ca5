#include "TestFolder.h"
#include "support/OutputFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <gtest/gtest.h>

using support::CopyToNewFile;
using support::Placing;

namespace {

class NewFile : public testing::Test, protected TestFolder {
protected:
    QStringList Entries() const {
        return QDir(Folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                        QDir::NoDotAndDotDot);
    }
};

TEST_F(NewFile, IsAWholeCopyWithThePermissions) {
    for (const QByteArray& content : {QByteArray(), QByteArray("short"), QByteArray(3'000'000, 'x')}) {
        const QString from = Write("from", content);
        ASSERT_TRUE(QFile::setPermissions(from, QFile::ReadOwner | QFile::ReadGroup));
        EXPECT_TRUE(CopyToNewFile(from, Path("Kopie ü")));
        EXPECT_TRUE(Read(Path("Kopie ü")) == content);
        EXPECT_EQ(QFile::permissions(Path("Kopie ü")), QFile::permissions(from));
        EXPECT_EQ(Entries(), QStringList({"from", "Kopie ü"}));
        QFile::remove(from);
        QFile::remove(Path("Kopie ü"));
    }
}

TEST_F(NewFile, NeverReplacesAndLeavesNothingWhenItFails) {
    const QString from = Write("from", "new");
    const QString taken = Write("taken", "old");
    ASSERT_TRUE(QFile::link(Path("nowhere"), Path("dangling")) && QDir(Folder()).mkdir("folder"));
    const QStringList before = Entries();
    for (const QString& to :
         {taken, Path("dangling"), Path("folder"), from, Path("no/such"), taken + "/x", QString()})
        EXPECT_FALSE(CopyToNewFile(from, to)) << to.toStdString();
    for (const QString& source : {Path("none"), Path("nowhere"), Path("folder")})
        EXPECT_FALSE(CopyToNewFile(source, Path("to"))) << source.toStdString();
    EXPECT_EQ(Entries(), before);
    EXPECT_EQ(Read(taken) + Read(from), "oldnew");
}

// Not every file system has links or a rename that refuses, so each way must do alone.
TEST_F(NewFile, EveryWayOfPlacingItRefusesANameThatExists) {
    for (const auto place : {support::PlaceByLink, support::PlaceByRename, support::PlaceByCopy}) {
        const QString taken = Write("taken", "old");
        ASSERT_TRUE(QFile::link(Path("nowhere"), Path("dangling")));
        {
            QTemporaryFile file(Path("XXXXXX"));
            ASSERT_TRUE(file.open() && file.write("new") == 3 && file.flush());
            EXPECT_EQ(place(file, taken), Placing::NameExists);
            EXPECT_NE(place(file, Path("dangling")), Placing::Done);
            const Placing placing = place(file, Path("free"));
#ifdef Q_OS_LINUX
            EXPECT_EQ(placing, Placing::Done);
#endif
            EXPECT_EQ(Read(Path("free")), placing == Placing::Done ? "new" : "no such file");
        }
        EXPECT_EQ(Read(taken), "old");
        for (const QString& name : Entries())
            QFile::remove(Path(name));
        EXPECT_EQ(Entries(), QStringList());
    }
}

} // namespace
