#include "FileSetDescriptor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <initializer_list>
#include <utility>
#include <vector>

namespace {

using Numbers = std::vector<uint32_t>;

class FileSet : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_Dir.path() + '/' + name; }

    void Create(std::initializer_list<const char*> names) const {
        for (const char* name : names) {
            QFile file(Path(QString::fromUtf8(name)));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name;
        }
    }

    CFileSetDescriptor Open(const QString& name) const {
        CFileSetDescriptor set;
        EXPECT_TRUE(set.SetFile(Path(name)));
        return set;
    }

    QTemporaryDir m_Dir;
};

// The numbers that stepping reaches until it stops moving.
Numbers StepThrough(CFileSetDescriptor set, uint32_t (CFileSetDescriptor::*step)()) {
    Numbers visited;
    QString before;
    do {
        before = set.GetNumberText();
        visited.push_back((set.*step)());
    } while (set.GetNumberText() != before);
    visited.pop_back();
    return visited;
}

Numbers Onwards(const CFileSetDescriptor& set) {
    return StepThrough(set, &CFileSetDescriptor::StepToNext);
}

Numbers Backwards(const CFileSetDescriptor& set) {
    return StepThrough(set, &CFileSetDescriptor::StepToPrevious);
}

} // namespace

TEST_F(FileSet, TakesANameApart) {
    struct Case {
        const char* name;
        const char* baseName;
        const char* number;
        const char* extension;
        const char* composed;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"run05.paf", "run", "05", ".paf", "run05.paf"},
             {"run7.paf", "run", "07", ".paf", "run07.paf"},
             {"part105.paf", "part1", "05", ".paf", "part105.paf"},
             {"setup.paf", "setup", "", ".paf", "setup.paf"},
             {"RUN05.PAF", "run", "05", ".paf", "run05.paf"},
             {"run05.XML", "run", "05", ".xml", "run.xml"},
             {"run05.frd", "run", "05", ".frd", "run05.frd"},
             {"12.paf", "", "12", ".paf", "12.paf"},
             {"run05", "run", "05", "", "run05"},
             {"a.b12.paf", "a.b", "12", ".paf", "a.b12.paf"},
             {"a12.b.paf", "a12.b", "", ".paf", "a12.b.paf"},
             {".paf", "", "", ".paf", ".paf"},
             {"run05.", "run", "05", ".", "run05."},
             {"Prüfung ÄÖ03.paf", "prüfung äö", "03", ".paf", "prüfung äö03.paf"},
             {"\U0001F600 1.paf", "\U0001F600 ", "01", ".paf", "\U0001F600 01.paf"},
         }) {
        const CFileSetDescriptor set = Open(QString::fromUtf8(c.name));
        EXPECT_EQ(set.GetBaseName(), QString::fromUtf8(c.baseName)) << c.name;
        EXPECT_EQ(set.GetNumberText(), QString::fromUtf8(c.number)) << c.name;
        EXPECT_EQ(set.GetExtension(), QString::fromUtf8(c.extension)) << c.name;
        EXPECT_EQ(set.GetFullPath(), Path(QString::fromUtf8(c.composed))) << c.name;
    }
}

TEST_F(FileSet, LeavesADirectoryWithDotsAndDigitsAlone) {
    CFileSetDescriptor set;
    set.SetFile("/Data.v2/Series12/run");
    EXPECT_EQ(set.GetBaseName(), "run");
    EXPECT_EQ(set.GetExtension(), "");
    EXPECT_EQ(set.GetNumberText(), "");
    EXPECT_EQ(set.GetFullPath(), "/Data.v2/Series12/run");
}

TEST_F(FileSet, StepsThroughTheNumbersInOrder) {
    Create({"a10.paf", "a03.paf", "a01.paf", "b02.paf", "a04.xml"});
    CFileSetDescriptor set = Open("a03.paf");
    EXPECT_EQ(set.GetCount(), 3);
    EXPECT_FALSE(set.IsFirst());
    EXPECT_FALSE(set.IsLast());

    EXPECT_EQ(set.StepToNext(), 10u);
    EXPECT_EQ(set.GetFullPath(), Path("a10.paf"));
    EXPECT_TRUE(set.IsLast());
    EXPECT_EQ(set.StepToNext(), 10u);
    EXPECT_EQ(Backwards(set), Numbers({3, 1}));

    set = Open("a01.paf");
    EXPECT_TRUE(set.IsFirst());
    EXPECT_EQ(set.StepToPrevious(), 1u);
    EXPECT_EQ(Onwards(set), Numbers({3, 10}));

    set = Open("b02.paf");
    EXPECT_EQ(set.GetCount(), 1);
    EXPECT_TRUE(set.IsFirst());
    EXPECT_TRUE(set.IsLast());
}

TEST_F(FileSet, AFileWithoutNumberIsNeitherFirstNorLastAndDoesNotStep) {
    Create({"a.paf", "a01.paf", "a02.paf"});
    CFileSetDescriptor set = Open("a.paf");
    EXPECT_EQ(set.GetCount(), 2);
    EXPECT_FALSE(set.IsFirst());
    EXPECT_FALSE(set.IsLast());
    EXPECT_EQ(set.StepToNext(), CFileSetDescriptor::kNoNumber);
    EXPECT_EQ(set.StepToPrevious(), CFileSetDescriptor::kNoNumber);
    EXPECT_EQ(set.GetFullPath(), Path("a.paf"));
}

TEST_F(FileSet, LooksAtTheDirectoryOnlyWhenAFileIsSet) {
    Create({"a01.paf"});
    CFileSetDescriptor set = Open("a01.paf");
    Create({"a02.paf"});
    EXPECT_TRUE(set.IsLast());
    set.SetFile(Path("a01.paf"));
    EXPECT_EQ(set.StepToNext(), 2u);
}

TEST_F(FileSet, LongerNumbersEnterByTheirLastTwoDigits) {
    Create({"run05.paf", "run123.paf", "runner7.paf", "run.paf", "run23x.paf"});
    EXPECT_EQ(Onwards(Open("run05.paf")), Numbers({7, 23}));
}

// Stepping looks for the first position of a number, so it goes no further than the second of two equal ones.
TEST_F(FileSet, KeepsEqualNumbersOfDifferentNames) {
    Create({"run05.paf", "run105.paf", "run6.paf"});
    const CFileSetDescriptor set = Open("run05.paf");
    EXPECT_EQ(set.GetCount(), 3);
    EXPECT_TRUE(Onwards(set).empty());
    EXPECT_EQ(Backwards(Open("run06.paf")), Numbers({5}));
}

TEST_F(FileSet, TakesWildcardsInNamesLiterally) {
    Create({"[a]1.paf", "[a]2.paf", "a3.paf", "b4.paf"});
    EXPECT_EQ(Onwards(Open("[a]1.paf")), Numbers({2}));
#ifndef Q_OS_WIN // names that only other systems allow
    Create({"x*1.paf", "x*3.paf", "xy2.paf", "z?1.paf", "z?4.paf", "zz2.paf", "b\\1.paf", "b\\5.paf"});
    EXPECT_EQ(Onwards(Open("x*1.paf")), Numbers({3}));
    EXPECT_EQ(Onwards(Open("z?1.paf")), Numbers({4}));
    EXPECT_EQ(Onwards(Open("b\\1.paf")), Numbers({5}));
#endif
}

TEST_F(FileSet, ListsFilesOnly) {
    Create({"a01.paf", ".paf"});
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("a02.paf"));
    EXPECT_EQ(Open("a01.paf").GetCount(), 1);
}

TEST_F(FileSet, DoesNotLetBaseNameAndExtensionOverlap) {
    Create({"q9.x"}); // begins with "q9.x" and ends with ".x", but not one after the other
    EXPECT_EQ(Open("q9.x.x").GetCount(), 0);
}

TEST_F(FileSet, WithoutExtensionEveryNameWithTheBaseNameBelongs) {
    Create({"run05", "run06.paf", "other07"});
    EXPECT_EQ(Onwards(Open("run05")), Numbers({6}));
}

TEST_F(FileSet, NumbersXmlFilesButAddressesThemWithout) {
    Create({"run.xml", "run05.xml", "run06.xml"});
    CFileSetDescriptor set = Open("run05.xml");
    EXPECT_EQ(set.GetFullPath(), Path("run.xml"));
    EXPECT_EQ(set.StepToNext(), 6u);
    EXPECT_EQ(set.GetFullPath(), Path("run.xml"));
}

TEST_F(FileSet, NamesTheNextFreeFile) {
    EXPECT_EQ(Open("A05.paf").GetNextFreeName(), Path("a00.paf"));
    Create({"a05.paf", "a07.paf", "b99.paf"});
    EXPECT_EQ(Open("a05.paf").GetNextFreeName(), Path("a08.paf"));
    EXPECT_EQ(Open("b99.paf").GetNextFreeName(), Path("b100.paf"));
}

TEST_F(FileSet, ADirectoryThatCannotBeReadHasNoNumbers) {
    const CFileSetDescriptor set = Open("missing/a05.paf");
    EXPECT_EQ(set.GetCount(), 0);
    EXPECT_TRUE(set.IsFirst());
    EXPECT_TRUE(set.IsLast());
    EXPECT_EQ(set.GetFullPath(), Path("missing/a05.paf"));
}

TEST_F(FileSet, ClearLeavesNumberZeroAndTheOldExtension) {
    Create({"a01.paf"});
    CFileSetDescriptor set = Open("a01.paf");
    set.Clear();
    EXPECT_EQ(set.GetBaseName(), "");
    EXPECT_EQ(set.GetExtension(), ".frd");
    EXPECT_EQ(set.GetNumberText(), "00");
    EXPECT_EQ(set.GetFullPath(), "00.frd");
    EXPECT_EQ(set.GetCount(), 0);
    EXPECT_EQ(CFileSetDescriptor().GetExtension(), ".frd");
}

TEST_F(FileSet, ANameAloneMeansTheCurrentDirectory) {
    Create({"A01.paf", "a02.paf"});
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_Dir.path()));
    CFileSetDescriptor set;
    set.SetFile("a01.paf");
    const QString first = set.GetFullPath();
    set.StepToNext();
    const QString second = set.GetFullPath();
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(first.toLower(), "a01.paf");
    EXPECT_EQ(second, "a02.paf");
}

#ifndef Q_OS_WIN
TEST_F(FileSet, FindsFilesWithoutRegardToCase) {
    Create({"RUN05.PAF", "Run06.paf", "run07.paf", "Ärger08.PAF"});
    CFileSetDescriptor set = Open("RUN05.PAF");
    EXPECT_EQ(set.GetFullPath(), Path("RUN05.PAF"));
    EXPECT_EQ(set.StepToNext(), 6u);
    EXPECT_EQ(set.GetFullPath(), Path("Run06.paf"));
    EXPECT_EQ(set.StepToNext(), 7u);
    EXPECT_EQ(set.GetFullPath(), Path("run07.paf"));
    EXPECT_EQ(Open("äRGER08.paf").GetFullPath(), Path("Ärger08.PAF"));
}

TEST_F(FileSet, PrefersTheChosenThenTheLowerCaseFileAndCountsTheNameOnce) {
    Create({"RUN05.PAF", "run05.paf", "run06.paf"});
    CFileSetDescriptor set = Open("RUN05.PAF");
    EXPECT_EQ(set.GetFullPath(), Path("RUN05.PAF"));
    EXPECT_EQ(Open("Run05.paf").GetFullPath(), Path("run05.paf"));
    EXPECT_EQ(set.GetCount(), 2);
    EXPECT_EQ(set.StepToNext(), 6u);
}

TEST_F(FileSet, ADirectoryIsNotTheFileLookedFor) {
    Create({"RUN05.PAF"});
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("run05.paf"));
    EXPECT_EQ(Open("run05.paf").GetFullPath(), Path("RUN05.PAF"));
}

TEST_F(FileSet, TheCaseOfTheDirectoryStays) {
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("Daten"));
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("daten"));
    Create({"Daten/run05.paf"});
    EXPECT_EQ(Open("Daten/RUN05.PAF").GetFullPath(), Path("Daten/run05.paf"));
    EXPECT_EQ(Open("daten/run05.paf").GetCount(), 0);
}
#endif
