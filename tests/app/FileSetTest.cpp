#include "Testing.h"
#include "app/FileSetDescriptor.h"

namespace {

class FileSet : public ::testing::Test, protected TestFolder {
protected:
    // Files of these names, "|" between them.
    void Create(const QString& names) const {
        for (const QString& name : names.split('|', Qt::SkipEmptyParts))
            Write(name);
    }

    // The form in which a folder is kept.
    static QString Kept(const QString& folder) {
#ifdef Q_OS_WIN
        return folder.toLower();
#else
        return folder;
#endif
    }

    CFileSetDescriptor Open(const QString& name) const {
        CFileSetDescriptor set;
        EXPECT_TRUE(set.SetFile(Path(name)));
        return set;
    }
};

// The numbers that stepping reaches until it stops moving.
QString StepThrough(CFileSetDescriptor set, uint32_t (CFileSetDescriptor::*step)()) {
    QStringList visited;
    QString before;
    do {
        before = set.GetNumberText();
        visited += QString::number((set.*step)());
    } while (set.GetNumberText() != before);
    visited.pop_back();
    return visited.join(' ');
}

} // namespace

TEST_F(FileSet, TakesANameApart) {
    using Case = std::array<const char*, 3>; // name, its parts, name composed of them
    for (const auto& [name, parts, composed] :
         {Case{"run05.paf", "run|05|.paf", "run05.paf"}, Case{"run7.paf", "run|07|.paf", "run07.paf"},
          Case{"part105.paf", "part1|05|.paf", "part105.paf"}, Case{"setup.paf", "setup||.paf", "setup.paf"},
          Case{"RUN05.PAF", "run|05|.paf", "run05.paf"}, Case{"run05.XML", "run|05|.xml", "run.xml"},
          Case{"run05.frd", "run|05|.frd", "run05.frd"}, Case{"run05", "run|05|", "run05"},
          Case{"a.b12.paf", "a.b|12|.paf", "a.b12.paf"}, Case{".paf", "||.paf", ".paf"},
          Case{"\U0001F600 1.paf", "\U0001F600 |01|.paf", "\U0001F600 01.paf"}}) {
        const CFileSetDescriptor set = Open(name);
        EXPECT_EQ(set.GetBaseName() + '|' + set.GetNumberText() + '|' + set.GetExtension(), parts);
        EXPECT_EQ(set.GetFullPath(), Kept(Folder() + '/') + composed) << name;
    }
}

TEST_F(FileSet, StepsThroughTheNumbersFoundInTheDirectory) {
    // Files, the opened one, their number, those onwards and backwards, whether it is the first and the last.
    using Case = std::tuple<const char*, const char*, int, const char*, const char*, bool, bool>;
    for (const auto& [files, opened, count, onwards, backwards, first, last] :
         {Case{"a10.paf|a03.paf|a01.paf|b02.paf|a04.xml", "a03.paf", 3, "10", "1", false, false},
          Case{"b02.paf", "b02.paf", 1, "", "", true, true},
          Case{"c.paf|c01.paf|c02.paf", "c.paf", 2, "", "", false, false},
          // two digits at most, and equal numbers stay
          Case{"run05.paf|run123.paf|runner7.paf|run23x.paf", "run05.paf", 3, "7 23", "", true, false},
          Case{"e05.paf|e105.paf|e6.paf", "e05.paf", 3, "", "", true, false},
          // no wildcards, no overlap of name and extension, no such directory
          Case{"[w]1.paf|[w]2.paf|w3.paf", "[w]1.paf", 2, "2", "", true, false},
          Case{"q9.x", "q9.x.x", 0, "", "", true, true},
          Case{"", "missing/a05.paf", 0, "", "", true, true}}) {
        Create(files);
        const CFileSetDescriptor set = Open(opened);
        EXPECT_EQ(set.GetCount(), count) << files;
        EXPECT_EQ(StepThrough(set, &CFileSetDescriptor::StepToNext), onwards) << files;
        EXPECT_EQ(StepThrough(set, &CFileSetDescriptor::StepToPrevious), backwards) << files;
        EXPECT_EQ(set.IsFirst(), first) << files;
        EXPECT_EQ(set.IsLast(), last) << files;
    }
}

TEST_F(FileSet, LooksAtTheDirectoryOnlyWhenAFileIsSet) {
    Create("a01.paf");
    ASSERT_TRUE(QDir(Folder()).mkdir("a09.paf"));
    CFileSetDescriptor set = Open("a01.paf");
    Create("a02.paf");
    EXPECT_TRUE(set.IsLast());
    set.SetFile(Path("a01.paf"));
    EXPECT_EQ(set.StepToNext(), 2u);
    set.Clear();
    EXPECT_EQ(set.GetBaseName() + set.GetFullPath(), "00.frd");
    EXPECT_EQ(set.GetCount(), 0);
}

#ifdef Q_OS_WIN
TEST_F(FileSet, LowersTheFolderUnlessThatWouldBeAnother) {
    ASSERT_TRUE(QDir(Folder()).mkpath("DATEN/\u0130"));
    Create("DATEN/RUN05.PAF|DATEN/RUN06.PAF|DATEN/\u0130/\u013005.paf");
    CFileSetDescriptor set = Open("DATEN\\RUN05.PAF");
    EXPECT_EQ(set.GetFullPath(), Kept(Path("DATEN\\")) + "RUN05.PAF");
    EXPECT_EQ(set.StepToNext(), 6u);
    EXPECT_TRUE(QFile::exists(set.GetFullPath()));
    EXPECT_EQ(Open("DATEN/\u0130/\u013005.paf").GetFullPath(), Path("DATEN/\u0130/\u013005.paf"));
    EXPECT_TRUE(set.SetFile("C:run05.paf"));
    EXPECT_EQ(set.GetFullPath(), "c:run05.paf");
}
#else
TEST_F(FileSet, FindsFilesWithoutRegardToCaseTheChosenFirst) {
    Create("RUN05.PAF|Run06.paf|Ärger08.PAF|TWO1.paf|two1.paf|TWO01.paf|two01.paf");
    ASSERT_TRUE(QDir(Folder()).mkdir("run05.paf") && QDir(Folder()).mkdir("Daten") &&
                QDir(Folder()).mkdir("daten"));
    Create("Daten/run05.paf");
    CFileSetDescriptor set = Open("run05.paf");
    EXPECT_EQ(set.StepToNext(), 6u);
    EXPECT_EQ(set.GetFullPath(), Path("Run06.paf"));
    EXPECT_EQ(Open("Two01.paf").GetCount(), 2) << "a name counts once whatever its case";
    EXPECT_EQ(Open("daten/run05.paf").GetCount(), 0);
    using Case = std::pair<const char*, const char*>;
    for (const auto& [opened, found] :
         {Case{"run05.paf", "RUN05.PAF"}, Case{"äRGER08.paf", "Ärger08.PAF"}, Case{"TWO01.paf", "TWO01.paf"},
          Case{"Two01.paf", "two01.paf"}, Case{"Daten/RUN05.PAF", "Daten/run05.paf"}})
        EXPECT_EQ(Open(opened).GetFullPath(), Path(found)) << "a directory is not the file looked for";
}
#endif
