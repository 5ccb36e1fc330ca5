#include "app/FileSetDescriptor.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <initializer_list>
#include <utility>
#include <vector>

using namespace Tracelyn;

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
             {"run05", "run", "05", "", "run05"},
             {"a.b12.paf", "a.b", "12", ".paf", "a.b12.paf"},
             {".paf", "", "", ".paf", ".paf"},
             {"\U0001F600 1.paf", "\U0001F600 ", "01", ".paf", "\U0001F600 01.paf"},
         }) {
        const CFileSetDescriptor set = Open(QString::fromUtf8(c.name));
        EXPECT_EQ(set.GetBaseName(), QString::fromUtf8(c.baseName)) << c.name;
        EXPECT_EQ(set.GetNumberText(), QString::fromUtf8(c.number)) << c.name;
        EXPECT_EQ(set.GetExtension(), QString::fromUtf8(c.extension)) << c.name;
        EXPECT_EQ(set.GetFullPath(), Path(QString::fromUtf8(c.composed))) << c.name;
    }
}

TEST_F(FileSet, StepsThroughTheNumbersFoundInTheDirectory) {
    struct Case {
        const char* what;
        std::initializer_list<const char*> files;
        const char* opened;
        int count;
        Numbers onwards, backwards;
        bool first, last;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"ascending",
              {"a10.paf", "a03.paf", "a01.paf", "b02.paf", "a04.xml"},
              "a03.paf",
              3,
              {10},
              {1},
              false,
              false},
             {"alone", {"b02.paf"}, "b02.paf", 1, {}, {}, true, true},
             {"without a number of its own",
              {"c.paf", "c01.paf", "c02.paf"},
              "c.paf",
              2,
              {},
              {},
              false,
              false},
             {"two digits at most",
              {"run05.paf", "run123.paf", "runner7.paf", "run23x.paf"},
              "run05.paf",
              3,
              {7, 23},
              {},
              true,
              false},
             {"equal numbers stay", {"e05.paf", "e105.paf", "e6.paf"}, "e05.paf", 3, {}, {}, true, false},
             {"no wildcards", {"[w]1.paf", "[w]2.paf", "w3.paf"}, "[w]1.paf", 2, {2}, {}, true, false},
             {"no overlap of name and extension", {"q9.x"}, "q9.x.x", 0, {}, {}, true, true},
             {"no such directory", {}, "missing/a05.paf", 0, {}, {}, true, true}}) {
        Create(c.files);
        const CFileSetDescriptor set = Open(c.opened);
        EXPECT_EQ(set.GetCount(), c.count) << c.what;
        EXPECT_EQ(StepThrough(set, &CFileSetDescriptor::StepToNext), c.onwards) << c.what;
        EXPECT_EQ(StepThrough(set, &CFileSetDescriptor::StepToPrevious), c.backwards) << c.what;
        EXPECT_EQ(set.IsFirst(), c.first) << c.what;
        EXPECT_EQ(set.IsLast(), c.last) << c.what;
    }
}

TEST_F(FileSet, LooksAtTheDirectoryOnlyWhenAFileIsSet) {
    Create({"a01.paf"});
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("a09.paf"));
    CFileSetDescriptor set = Open("a01.paf");
    Create({"a02.paf"});
    EXPECT_TRUE(set.IsLast());
    set.SetFile(Path("a01.paf"));
    EXPECT_EQ(set.GetNextFreeName(), Path("a03.paf"));
    EXPECT_EQ(set.StepToNext(), 2u);
}

TEST_F(FileSet, ClearLeavesNumberZeroAndTheOldExtension) {
    Create({"a01.paf"});
    CFileSetDescriptor set = Open("a01.paf");
    set.Clear();
    EXPECT_EQ(set.GetBaseName(), "");
    EXPECT_EQ(set.GetFullPath(), "00.frd");
    EXPECT_EQ(set.GetCount(), 0);
}

#ifndef Q_OS_WIN
TEST_F(FileSet, FindsFilesWithoutRegardToCaseTheChosenFirst) {
    Create({"RUN05.PAF", "Run06.paf", "Ärger08.PAF", "TWO1.paf", "two1.paf"});
    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("run05.paf"));
    CFileSetDescriptor set = Open("run05.paf");
    EXPECT_EQ(set.GetFullPath(), Path("RUN05.PAF")) << "a directory is not the file looked for";
    EXPECT_EQ(set.StepToNext(), 6u);
    EXPECT_EQ(set.GetFullPath(), Path("Run06.paf"));
    EXPECT_EQ(Open("äRGER08.paf").GetFullPath(), Path("Ärger08.PAF"));
    Create({"TWO01.paf", "two01.paf"});
    EXPECT_EQ(Open("TWO01.paf").GetFullPath(), Path("TWO01.paf"));
    EXPECT_EQ(Open("Two01.paf").GetFullPath(), Path("two01.paf"));
    EXPECT_EQ(Open("Two01.paf").GetCount(), 2) << "a name counts once whatever its case";

    ASSERT_TRUE(QDir(m_Dir.path()).mkdir("Daten") && QDir(m_Dir.path()).mkdir("daten"));
    Create({"Daten/run05.paf"});
    EXPECT_EQ(Open("Daten/RUN05.PAF").GetFullPath(), Path("Daten/run05.paf"));
    EXPECT_EQ(Open("daten/run05.paf").GetCount(), 0);
}
#endif
