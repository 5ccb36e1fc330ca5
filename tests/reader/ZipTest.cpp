#include "reader/container/zip.h"
#include "Testing.h"

#include <QDirIterator>
#include <QtEndian>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

const QString kEntry = "tmpandat.bin";

QByteArray Hex(const char* text) {
    return QByteArray::fromHex(text);
}

// "hello" as one entry, written down by hand.
QByteArray Hello(const QByteArray& name) {
    const QByteArray length{QByteArray(1, static_cast<char>(name.size() % 256)) +
                            static_cast<char>(name.size() / 256)};
    return Hex("504b0304 0100 0000 0800 0000 0000 86a61036 07000000 05000000") + length + Hex("0600") + name +
           Hex("78da 062c0215 cb48cdc9c90700");
}

// The directory is only looked at for its signature, but the reader wants to see 30 bytes of it.
QByteArray Archive(const QByteArray& entries) {
    return entries + Hex("504b0102") + QByteArray(26, '\0');
}

// The archive, its first entry announcing another size.
QByteArray Announcing(int64_t size, QByteArray archive) {
    const auto bytes = qToLittleEndian(static_cast<uint32_t>(size));
    return archive.replace(22, 4, QByteArray(reinterpret_cast<const char*>(&bytes), 4));
}

QByteArray Noise(qsizetype size) {
    QByteArray noise(size, '\0');
    for (uint32_t random = 1; char& byte : noise)
        byte = static_cast<char>((random = random * 1664525 + 1013904223) >> 24);
    return noise;
}

class Zip : public ::testing::Test, protected TestFolder {
protected:
    void SetUp() override { ASSERT_TRUE(QDir(Folder()).mkpath("box/out")); }

    QString Out() const { return Path("box/out/"); }

    bool Expand(const QByteArray& archive, const QString& entry = QString()) {
        Write("a.paf", archive);
        return CZip(Path("a.paf")).Expand(Out(), entry);
    }

    // Takes the files below box, which holds the target folder, away and tells their paths from there.
    std::string TakeFiles() const {
        const QDir box(Path("box"));
        QStringList found;
        for (QDirIterator it(box.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
             it.hasNext();)
            found.append(box.relativeFilePath(it.next()));
        found.sort();
        for (const QString& file : found)
            QFile::remove(box.filePath(file));
        return found.join(" ").toStdString();
    }

    bool Pack(const char* file, const QString& entry, const char* archive = "a.paf") const {
        CZip zip(Path(archive));
        zip.AddFileAs(Path(file), entry);
        return zip.Pack();
    }

    bool Refuses(const QByteArray& archive) { return !Expand(archive) && TakeFiles().empty(); }
};

TEST_F(Zip, PacksByteForByteAndListsASkippedFileWithoutSizes) {
    Write("hello.txt", "hello");
    CZip zip(Path("a.paf"));
    zip.SetBaseFolder(Folder());
    zip.AddFile("/", "hello.txt", false, true);
    zip.AddFile("/", "gone", true, false);
    ASSERT_TRUE(zip.Pack());
    const QByteArray expected =
        Hello("hello.txt") + Hex("504b0102 0100 0100 0000 0800 00000000 86a61036 07000000 05000000 0900") +
        QByteArray(16, '\0') + "hello.txt" +
        Hex("504b0102 0100 0100 0000 0800 00000000 00000000 00000000 00000000 0500") + QByteArray(16, '\0') +
        "/gone" + Hex("504b0506 0000 0000 0200 0200 6a000000 34000000 0000");
    EXPECT_EQ(Read(Path("a.paf")).toHex(), expected.toHex());
}

// Rows of numbers; sizes around those of zlib's window and of the pieces.
TEST_F(Zip, CompressesAndExpandsPieceByPieceAsZlibDoesTheWhole) {
    QByteArray rows;
    for (const char digit : Noise(1'200'000))
        rows += "0123456789,-.\n01"[digit & 15];
    for (const qsizetype size : {1, 32767, 65536, 65537, 131072, 524'288, 1'000'000, 1'200'000}) {
        Write("rows", rows.left(size));
        ASSERT_TRUE(Pack("rows", "n"));
        const QByteArray stream = qCompress(rows.left(size), 9).mid(4); // behind the size
        const QByteArray packed = Read(Path("a.paf")).mid(30);
        EXPECT_TRUE(packed.startsWith("n" + stream.left(2) + stream.right(4) + stream.chopped(4).mid(2)))
            << size;
        EXPECT_TRUE(CZip(Path("a.paf")).Expand(Out(), "n") && Read(Out() + "n") == rows.left(size)) << size;
    }
}

TEST_F(Zip, ExpandsTheWantedEntriesOrNone) {
    const QByteArray hidden =
        Hello("other").replace(18, 1, QByteArray(1, static_cast<char>(7 + Hello("tmpandat.bin").size())));
    const QByteArray damaged = Hello("late").replace("\xcb\x48", "\xcb\x49");
    using Case = std::tuple<QByteArray, QString, bool, const char*>;
    for (const auto& [entries, wanted, expanded, files] :
         {Case{Hello("other") + Hello("tmpandat.bin") + damaged, kEntry, true, "out/tmpandat.bin"},
          // what is skipped may announce what it likes
          Case{Announcing(0xFFFFFFFF, Hello("other")) + Hello("tmpandat.bin"), kEntry, true,
               "out/tmpandat.bin"},
          Case{Hello("other") + Hello("TMPANDAT.BIN"), kEntry, true, ""}, Case{"", "", true, ""},
          Case{Hello("tmpandat.bin.") + Hello(QByteArray("tmpandat.bin\0", 13)), kEntry, true, ""},
          Case{hidden + Hello("tmpandat.bin"), kEntry, true, ""},
          Case{Hello(QByteArray(259, 'n')) + Hello("tmpandat.bin"), kEntry, true, "out/tmpandat.bin"},
          Case{Hello(QByteArray(260, 'n')) + Hello("tmpandat.bin"), kEntry, false, ""},
          Case{Hello("early") + damaged, "", false, ""},
          Case{Hello("sub\\x") + Hello("sub/a..b"), "", true, "out/sub/a..b out/sub/x"},
          Case{Hello("console") + Hello("com10"), "", true, "out/com10 out/console"}}) {
        EXPECT_EQ(Expand(Archive(entries), wanted), expanded) << entries.constData();
        EXPECT_EQ(TakeFiles(), files);
    }
}

TEST_F(Zip, RefusesEveryTruncationAndEveryLie) {
    const QByteArray whole = Archive(Hello("a") + Hello("b"));
    ASSERT_FALSE(Refuses(whole));
    TakeFiles();
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_TRUE(Refuses(whole.left(size))) << size;
    // Signature, version, flags, checksum, both sizes, length of the name and of the extra field, the stream.
    using Case = std::pair<qsizetype, const char*>;
    for (const auto& [offset, bytes] :
         {Case{0, "504b0708"}, Case{4, "1400"}, Case{6, "0200"}, Case{14, "87"}, Case{18, "ffffffff"},
          Case{18, "06"}, Case{18, "00"}, Case{22, "ffffffff"}, Case{22, "04"}, Case{22, "06"},
          Case{26, "ffff"}, Case{28, "05"}, Case{28, "07"}, Case{31, "79"}, Case{33, "07"}, Case{38, "49"}})
        EXPECT_TRUE(Refuses(QByteArray(whole).replace(offset, Hex(bytes).size(), Hex(bytes))))
            << offset << ' ' << bytes;
}

TEST_F(Zip, RefusesNamesAndTargetsThatCouldLieElsewhere) {
    const QByteArray names(
        "../x|a\\..\\..\\x|..|/tmp/x|\\x|C:\\x|x:stream|a#b||folder/|./x|a//x|a/./x|x.|x |x. .|a./x|a\nb|"
        "con|NUL.txt|a/aux .x|Prn|COM1|lpt9.tmpandat.bin|com\xb9|CONIN$|clock$");
    for (const QByteArray& name : QByteArray(names).replace('#', '\0').split('|'))
        EXPECT_TRUE(Refuses(Archive(Hello(name)))) << name.toStdString();
    Write("a.paf", Archive(Hello("tmpandat.bin")));
    for (const QString& target : {QString(), QString("relative/"), Path("a.paf/"),
#ifdef Q_OS_WIN
                                  QString("\\\\server\\share\\"), QString("/windows/")
#endif
         })
        EXPECT_FALSE(CZip(Path("a.paf")).Expand(target, kEntry)) << target.toStdString();
}

TEST_F(Zip, ABombEndsAtTheSizeThatItAnnounces) {
    Write("zeros", QByteArray(3'000'000, '\0'));
    ASSERT_TRUE(Pack("zeros", kEntry));
    const QByteArray whole = Read(Path("a.paf"));
    for (const int64_t size : {3'000'000, 0, 1, 131'072, 2'999'999, 3'000'001, 3'100'000}) {
        Write("a.paf", Announcing(size, whole));
        double reached = 0;
        const auto progress = [&](double done) {
            EXPECT_LE(reached, done);
            reached = done;
            return true;
        };
        EXPECT_EQ(CZip(Path("a.paf")).Expand(Out(), kEntry, progress), size == 3'000'000) << size;
        EXPECT_LE(reached, 1) << size;
        EXPECT_EQ(TakeFiles(), size == 3'000'000 ? "out/tmpandat.bin" : "");
    }
}

// A machine that waits records rows that are all alike: a thousandth of them is left when they are packed.
TEST_F(Zip, ExpandsWhateverAHeaderCanAnnounceUntilItIsStopped) {
    QFile zeros(Path("zeros"));
    ASSERT_TRUE(zeros.open(QIODevice::WriteOnly) && zeros.resize(64 << 20));
    ASSERT_TRUE(Pack("zeros", kEntry));
    EXPECT_TRUE(CZip(Path("a.paf")).Expand(Out(), kEntry));
    EXPECT_EQ(QFileInfo(Out() + kEntry).size(), 64 << 20);
    EXPECT_EQ(TakeFiles(), "out/tmpandat.bin");
    double reached = 0;
    EXPECT_FALSE(
        CZip(Path("a.paf")).Expand(Out(), kEntry, [&](double done) { return (reached = done) < 0.5; }));
    EXPECT_TRUE(reached >= 0.5 && reached < 0.6) << reached;
    EXPECT_EQ(TakeFiles(), "");
}

#ifdef Q_OS_UNIX
TEST_F(Zip, NeverWritesThroughWhatStandsInItsPlace) {
    const QByteArray archive = Archive(Hello("tmpandat.bin"));
    const QString target = Out() + kEntry;
    Write("victim", "untouched");
    ASSERT_TRUE(QFile::link(Path("victim"), target));
    EXPECT_TRUE(Expand(archive, kEntry)) << "a link";
    EXPECT_EQ(TakeFiles(), "out/tmpandat.bin");
    ASSERT_EQ(::link(QFile::encodeName(Path("victim")), QFile::encodeName(target)), 0);
    EXPECT_TRUE(Expand(archive, kEntry)) << "the file itself under a second name";
    EXPECT_EQ(Read(target) + Read(Path("victim")), "hellountouched");
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(QFile::encodeName(target), 12345, 12345), 0);
        EXPECT_TRUE(Expand(archive, kEntry)) << "another user's file";
        EXPECT_EQ(QFileInfo(target).ownerId(), 0U);
    }
    EXPECT_EQ(TakeFiles(), "out/tmpandat.bin");
    ASSERT_TRUE(QDir().mkdir(target));
    EXPECT_FALSE(Expand(archive, kEntry)) << "a folder";
    ASSERT_TRUE(QDir().mkdir(Path("elsewhere")) && QFile::link(Path("elsewhere"), Out() + "sub"));
    EXPECT_FALSE(Expand(Archive(Hello("sub/x")))) << "a link in place of a folder";
    EXPECT_FALSE(Expand(Archive(Hello("sub/deeper/x"))));
    EXPECT_TRUE(QDir(Path("elsewhere")).isEmpty());
}
#endif

} // namespace
