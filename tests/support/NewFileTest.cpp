#include "Testing.h"
#include "support/OutputFile.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <thread>

using support::CopyToNewFile;
using support::Placing;

namespace {

class NewFile : public testing::Test, protected TestFolder {};

TEST_F(NewFile, IsAWholeCopyWithThePermissionsAndNeverAPart) {
    for (const qsizetype size : {0, 5, 32'000'000}) {
        const QByteArray content(size, 'x');
        const QString from = Write("from", content);
        ASSERT_TRUE(QFile::setPermissions(from, QFile::ReadOwner | QFile::ReadGroup));
        const QString to = Path("Kopie ü");
        std::atomic<bool> isDone = false;
        std::thread reader([&] { // what somebody sees who looks while it is made
            while (!isDone) {
                const QFileInfo seen(to);
                EXPECT_TRUE(!seen.exists() || seen.size() == size) << seen.size();
            }
        });
        EXPECT_TRUE(CopyToNewFile(from, to));
        isDone = true;
        reader.join();
        EXPECT_TRUE(Read(to) == content);
        EXPECT_EQ(QFile::permissions(to), QFile::permissions(from));
        EXPECT_EQ(Entries(), QStringList({"from", "Kopie ü"}));
        for (const QString& path : {from, to}) // some systems remove no file that is read-only
            EXPECT_TRUE(QFile::setPermissions(path, QFile::WriteOwner) && QFile::remove(path));
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
#ifdef Q_OS_WIN
            if (place == support::PlaceByLink)
                continue; // the system moves files without it
#endif
            EXPECT_EQ(place(file, taken), Placing::NameExists);
            EXPECT_NE(place(file, Path("dangling")), Placing::Done);
            EXPECT_EQ(place(file, Path("free")), Placing::Done);
            EXPECT_EQ(Read(Path("free")), "new");
        }
        EXPECT_EQ(Read(taken), "old");
        for (const QString& name : Entries())
            QFile::remove(Path(name));
        EXPECT_EQ(Entries(), QStringList());
    }
}

} // namespace
