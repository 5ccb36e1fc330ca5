#include "zip.h"
#include "ExpandedAnalysis.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <stdexcept>
#include <tuple>
#include <utility>

using Tracelyn::CExpandedAnalysis;
using Tracelyn::CZip;

namespace {

const QString kEntry = QStringLiteral("tmpandat.bin");

QByteArray Hex(const char* text) {
    return QByteArray::fromHex(text);
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

// "hello" as one entry, written down by hand.
QByteArray HelloEntry(const QByteArray& name) {
    QByteArray length(2, '\0');
    qToLittleEndian(static_cast<uint16_t>(name.size()), length.data());
    return Hex("504b0304 0100 0000 0800 0000 0000 86a61036 07000000 05000000") + length + Hex("0600") + name +
           Hex("78da 062c0215") + Hex("cb48cdc9c90700");
}

// The directory is only looked at for its signature, but the reader wants to see 30 bytes of it.
QByteArray Archive(std::initializer_list<QByteArray> entries) {
    QByteArray bytes;
    for (const QByteArray& entry : entries)
        bytes += entry;
    return bytes + Hex("504b0102") + QByteArray(26, '\0');
}

class Zip : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_Folder.isValid());
        ASSERT_TRUE(QDir(m_Folder.path()).mkpath(QStringLiteral("box/out")));
    }

    QString Path(const QString& name) const { return m_Folder.filePath(name); }
    QString Out() const { return Path(QStringLiteral("box/out/")); }

    bool ExpandBytes(const QByteArray& archive, const QString& entry = QString()) {
        WriteFile(Path(QStringLiteral("a.paf")), archive);
        return CZip(Path(QStringLiteral("a.paf"))).Expand(Out(), entry);
    }

    // The files below box, which holds the target folder, by their paths from there.
    QStringList FilesInBox() const {
        const QDir box(Path(QStringLiteral("box")));
        QStringList found;
        for (QDirIterator it(box.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
             it.hasNext();)
            found.append(box.relativeFilePath(it.next()));
        found.sort();
        return found;
    }

    QTemporaryDir m_Folder;
};

TEST_F(Zip, PacksByteForByteAndListsASkippedFileWithoutSizes) {
    WriteFile(Path(QStringLiteral("hello.txt")), "hello");
    CZip zip(Path(QStringLiteral("a.paf")));
    zip.SetBaseFolder(m_Folder.path());
    zip.AddFile(QStringLiteral("/"), QStringLiteral("hello.txt"), false, true);
    zip.AddFile(QStringLiteral("/"), QStringLiteral("gone"), true, false);
    ASSERT_TRUE(zip.Pack());
    const QByteArray expected =
        Hex("504b0304 0100 0000 0800 0000 0000 86a61036 07000000 05000000 0900 0600") + "hello.txt" +
        Hex("78da 062c0215 cb48cdc9c90700") +
        Hex("504b0102 0100 0100 0000 0800 00000000 86a61036 07000000 05000000 0900 0000 0000 0000 0000 "
            "00000000"
            "00000000") +
        "hello.txt" +
        Hex("504b0102 0100 0100 0000 0800 00000000 00000000 00000000 00000000 0500 0000 0000 0000 0000 "
            "00000000"
            "00000000") +
        "/gone" + Hex("504b0506 0000 0000 0200 0200 6a000000 34000000 0000");
    EXPECT_EQ(ReadFile(Path(QStringLiteral("a.paf"))).toHex(), expected.toHex());
}

TEST_F(Zip, PacksNothingIntoAnEmptyArchiveThatDoesNotExpand) {
    CZip zip(Path(QStringLiteral("a.paf")));
    EXPECT_TRUE(zip.Pack());
    EXPECT_EQ(ReadFile(Path(QStringLiteral("a.paf"))), QByteArray());
    EXPECT_FALSE(zip.Expand(Out(), QString()));
}

TEST_F(Zip, RoundTripKeepsEveryByteAndCreatesFolders) {
    std::minstd_rand random(1); // the same bytes every time
    QByteArray noise(100000, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    const std::initializer_list<std::pair<QString, QByteArray>> files{
        {QStringLiteral("empty"), QByteArray()},
        {QStringLiteral("Gr\u00fcn.xml"), "<Analysis/>"},
        {QStringLiteral("noise"), noise},
        {QStringLiteral("zeros"), QByteArray(3'000'000, '\0')}};
    ASSERT_TRUE(QDir(m_Folder.path()).mkpath(QStringLiteral("in/deep/er")));
    CZip zip(Path(QStringLiteral("a.paf")));
    zip.SetBaseFolder(Path(QStringLiteral("in/")));
    for (const auto& [name, bytes] : files) {
        WriteFile(Path(QStringLiteral("in/deep/er/")) + name, bytes);
        zip.AddFile(QStringLiteral("deep/er/"), name, true, true);
    }
    ASSERT_TRUE(zip.Pack());
    ASSERT_TRUE(zip.Expand(Out() + QStringLiteral("new/"), QString()));
    for (const auto& [name, bytes] : files)
        EXPECT_TRUE(ReadFile(Out() + QStringLiteral("new/deep/er/") + name) == bytes) << name.toStdString();
}

TEST_F(Zip, ExpandsOnlyTheWantedEntry) {
    const QByteArray damaged = HelloEntry("late").replace("\xcb\x48", "\xcb\x49");
    for (const auto& [archive, expected] : std::initializer_list<std::pair<QByteArray, QStringList>>{
             {Archive({HelloEntry("other"), HelloEntry("tmpandat.bin"), damaged}), {"out/tmpandat.bin"}},
             {Archive({HelloEntry("other"), HelloEntry("TMPANDAT.BIN"), HelloEntry("tmpandat.bin2")}), {}},
             {Archive({}), {}}}) {
        EXPECT_TRUE(ExpandBytes(archive, kEntry));
        EXPECT_EQ(FilesInBox(), expected);
        QFile::remove(Out() + kEntry);
    }
}

TEST_F(Zip, ReplacesAnOlderFile) {
    WriteFile(Out() + kEntry, "a longer text from an earlier run");
    EXPECT_TRUE(ExpandBytes(Archive({HelloEntry("tmpandat.bin")}), kEntry));
    EXPECT_EQ(ReadFile(Out() + kEntry), "hello");
}

TEST_F(Zip, RefusesEveryTruncation) {
    const QByteArray whole = Archive({HelloEntry("a"), HelloEntry("b")});
    for (qsizetype size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(ExpandBytes(whole.left(size))) << size;
        EXPECT_EQ(FilesInBox(), QStringList()) << size;
    }
    EXPECT_TRUE(ExpandBytes(whole));
}

TEST_F(Zip, NeverDeliversDamagedContents) {
    const QByteArray whole = Archive({HelloEntry("a")});
    for (qsizetype bit = 0; bit < whole.size() * 8; ++bit) {
        QByteArray flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        const bool expanded = ExpandBytes(flipped);
        const QStringList files = FilesInBox();
        EXPECT_LE(files.size(), expanded ? 1 : 0) << "byte " << bit / 8;
        for (const QString& file : files) {
            EXPECT_EQ(ReadFile(Path(QStringLiteral("box/")) + file), "hello");
            QFile::remove(Path(QStringLiteral("box/")) + file);
        }
    }
}

TEST_F(Zip, RefusesHeadersThatAreNotItsOwnAndSizesThatLie) {
    struct Case {
        qsizetype offset;
        const char* bytes;
        const char* what;
    };
    for (const auto& [offset, bytes, what] : {
             Case{0, "504b0708", "another signature"},
             Case{4, "1400", "another version"},
             Case{6, "0200", "flags"},
             Case{18, "ffffffff", "compressed size beyond the file"},
             Case{18, "06000000", "compressed size too small"},
             Case{18, "00000000", "no compressed data"},
             Case{22, "ffffffff", "uncompressed size that deflate cannot reach"},
             Case{22, "04000000", "uncompressed size too small"},
             Case{22, "06000000", "uncompressed size too large"},
             Case{26, "0401", "name of 260 bytes"},
             Case{26, "ffff", "name beyond the file"},
             Case{28, "0500", "shorter extra field"},
             Case{28, "0700", "longer extra field"},
         }) {
        const QByteArray patch = Hex(bytes);
        QByteArray archive = HelloEntry("a") + QByteArray(300, 'x');
        archive.replace(offset, patch.size(), patch);
        EXPECT_FALSE(ExpandBytes(archive, QStringLiteral("a"))) << what;
        EXPECT_EQ(FilesInBox(), QStringList()) << what;
    }
}

TEST_F(Zip, LongestNameIs259Bytes) {
    // Too long for one file name, so the entry is skipped rather than written.
    EXPECT_TRUE(ExpandBytes(Archive({HelloEntry(QByteArray(259, 'n')), HelloEntry("tmpandat.bin")}), kEntry));
    EXPECT_FALSE(
        ExpandBytes(Archive({HelloEntry(QByteArray(260, 'n')), HelloEntry("tmpandat.bin")}), kEntry));
}

TEST_F(Zip, NamesThatCouldLeaveTheTargetAreRefused) {
    for (const QByteArray& name :
         {QByteArray("../x"), QByteArray("..\\x"), QByteArray("a/../../x"), QByteArray("a\\..\\x"),
          QByteArray(".."), QByteArray("/tmp/x"), QByteArray("\\x"), QByteArray("C:\\x"), QByteArray("C:x"),
          QByteArray("x:stream"), QByteArray("a\0b", 3), QByteArray(""), QByteArray("folder/")}) {
        EXPECT_FALSE(ExpandBytes(Archive({HelloEntry(name)}))) << name.toStdString();
        EXPECT_EQ(FilesInBox(), QStringList()) << name.toStdString();
    }
    EXPECT_TRUE(ExpandBytes(Archive({HelloEntry("sub\\x")})));
    EXPECT_EQ(FilesInBox(), QStringList{"out/sub/x"});
}

TEST_F(Zip, ADamagedLaterEntryLeavesNothingOfTheEarlierOnes) {
    const QByteArray damaged = HelloEntry("late").replace("\xcb\x48", "\xcb\x49");
    EXPECT_FALSE(ExpandBytes(Archive({HelloEntry("early"), damaged})));
    EXPECT_EQ(FilesInBox(), QStringList());
}

TEST_F(Zip, TargetMustBeAbsoluteAndWritable) {
    WriteFile(Path(QStringLiteral("a.paf")), Archive({HelloEntry("tmpandat.bin")}));
    WriteFile(Path(QStringLiteral("file")), "in the way");
    const CZip zip(Path(QStringLiteral("a.paf")));
    for (const QString& target : {QString(), QStringLiteral("relative/"), Path(QStringLiteral("file/")),
                                  Path(QStringLiteral("file/sub/"))})
        EXPECT_FALSE(zip.Expand(target, kEntry)) << target.toStdString();
    EXPECT_FALSE(CZip(Path(QStringLiteral("missing.paf"))).Expand(Out(), kEntry));
    EXPECT_FALSE(CZip(m_Folder.path()).Expand(Out(), kEntry));
    EXPECT_FALSE(QFile::exists(QStringLiteral("relative")));
    EXPECT_EQ(FilesInBox(), QStringList());
}

TEST_F(Zip, AFailedPackKeepsWhatWasThere) {
    WriteFile(Path(QStringLiteral("hello.txt")), "hello");
    const QString archive = Path(QStringLiteral("box/a.paf"));
    for (const QString& name : {QStringLiteral("gone"), QStringLiteral("\u0416.xml"), QString(260, u'n')}) {
        for (const bool existing : {false, true}) {
            QFile::remove(archive);
            if (existing)
                WriteFile(archive, "older archive");
            CZip zip(archive);
            zip.SetBaseFolder(Path(QString()));
            zip.AddFile(QString(), QStringLiteral("hello.txt"), false, true);
            zip.AddFile(QString(), name, false, true);
            EXPECT_FALSE(zip.Pack()) << name.toStdString();
            EXPECT_EQ(FilesInBox(), existing ? QStringList{"a.paf"} : QStringList()) << name.toStdString();
            EXPECT_EQ(ReadFile(archive), existing ? "older archive" : "no such file");
        }
    }
    EXPECT_FALSE(CZip(Path(QStringLiteral("nowhere/a.paf"))).Pack());
}

TEST_F(Zip, AnExpandedAnalysisIsGoneWithItsObjectAlsoWhenItNeverCame) {
    for (const auto& [bytes, expanded, contents] :
         std::initializer_list<std::tuple<QByteArray, bool, QByteArray>>{
             {Archive({HelloEntry("tmpandat.bin")}), true, "hello"},
             {Archive({HelloEntry("other")}), true, "no such file"},
             {"damaged", false, "no such file"}}) {
        WriteFile(Path(QStringLiteral("a.paf")), bytes);
        WriteFile(Out() + kEntry, "left by an earlier run");
        try {
            const CExpandedAnalysis analysis(Path(QStringLiteral("a.paf")), Out());
            EXPECT_EQ(analysis.IsExpanded(), expanded);
            EXPECT_EQ(analysis.Path(), Out() + kEntry);
            EXPECT_EQ(ReadFile(analysis.Path()), contents);
            throw std::runtime_error("while it is read");
        } catch (const std::runtime_error&) {
            EXPECT_EQ(FilesInBox(), QStringList());
        }
    }
}

} // namespace
