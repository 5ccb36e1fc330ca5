// From small documents to the model and the problems found.
#include "XmlReader.h"

#include "ExpandedAnalysis.h"
#include "GraphData.h"
#include "GraphDataVariants.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace Tracelyn;

namespace {

QByteArray Document(const QByteArray& variables, const QByteArray& groups, const QByteArray& rows = "1\n2") {
    return "<Analysis Name='Bend 1'><DataDefinition><IndexSet Name='Time'><Unit Name='ms'/></IndexSet>"
           "<VariablesDefinitions>" +
           variables + "</VariablesDefinitions></DataDefinition><Groups>" + groups + "</Groups><Data>" +
           rows + "</Data></Analysis>";
}

// The document of a single group, whose lines show variable V.
QByteArray OneGroup(const QByteArray& lines,
                    const QByteArray& variable = "<TypedData Name='V' Type='Long'/>") {
    return Document(variable, "<Group Name='A'>" + lines + "</Group>");
}

// A model read from a text or a file, and the words of the problems, "; " between them.
class Reading {
public:
    explicit Reading(const QByteArray& xml, int level = 0) {
        const QTemporaryDir folder;
        QFile file(folder.filePath("file.xml"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(xml);
        file.close();
        Read(file.fileName(), level);
    }
    static Reading FromFile(const QString& path, int level) { return Reading(path, level); }

    // "group[set set] group[set]"
    std::string Outline() const {
        QStringList groups;
        for (const auto& group : data.GetGroups()) {
            QStringList names;
            for (const CGraphDataSet* set : group->m_Sets)
                names += set->GetName();
            groups += group->m_strName + "[" + names.join(" ") + "]";
        }
        return groups.join(" ").toStdString();
    }
    const CGraphDataGroup& Group(size_t at = 1) const { return *data.GetGroups().at(at); }
    const CGraphDataSet& Set(size_t at = 0) const { return *Group().m_Sets.at(at); }

    CGraphData data;
    QString name;
    std::string problems;

private:
    Reading(const QString& path, int level) { Read(path, level); }
    void Read(const QString& path, int level) {
        CXmlReader reader;
        reader.SetAccessLevel(level);
        reader.ReadAnalysis(data, path);
        name = reader.GetAnalysisName();
        for (const ReadResult& result : reader.GetResults())
            problems += (problems.empty() ? "" : "; ") + result.GetText().toStdString();
    }
};

using TextPairs = std::initializer_list<std::pair<const char*, const char*>>;

std::string Describe(const CGraphDataSet& set) {
    return QString("%1: (v + %2) * %3 %4, %5 decimals, shown %6%7")
        .arg(set.GetName())
        .arg(double{set.GetUnitOffset()})
        .arg(double{set.GetUnitFactor()})
        .arg(set.GetUnit())
        .arg(set.GetPrecision())
        .arg(static_cast<int>(set.GetDisplayType()))
        .arg(set.IsIgnoredForVerticalAutoScaling() ? ", ignored" : "")
        .toStdString();
}

std::vector<ColorRef> ColorsOf(const CGraphDataGroup& group) {
    std::vector<ColorRef> colors;
    for (const CGraphDataSet* set : group.m_Sets)
        colors.push_back(set->GetColor());
    return colors;
}

} // namespace

TEST(XmlReader, StopsOnlyWhereItCannotGoOnAndKeepsWhatItHasByThen) {
    const QByteArray base =
        Document("<TypedData Name='V' Type='Long' Description='v'/>"
                 "<TypedData Name='W' Type='Float' Description='w'/>",
                 "<Group Name='A'><Line DataName='V'/></Group>"
                 "<Group Name='B'><Line DataName='W'/><RefLine Name='r' Value='1'/></Group>",
                 "1,2\n3,4\n5,6");
    constexpr const char* kAll = "Time[Time] A[v] B[w r]";
    constexpr const char* kIndex = "Time[Time]";
    struct Case {
        const char* replaced;
        const char* by;
        const char* problems;
        const char* outline;
        int samples; // 3 with the data, 1 for a set of one value
    };
    for (const Case& expected : {
             Case{"V", "V", "", kAll, 3},
             {"Analysis", "analysis", "Invalid root name: analysis", "", 0},
             {"DataDefinition", "Definition", "Missing node: DataDefinition; Missing node: IndexSet", "", 0},
             {"IndexSet", "indexset", "Missing node: IndexSet", "", 0},
             {"IndexSet Name='Time'", "IndexSet Name=''", "Missing attribute: IndexSet Name", "", 0},
             {"IndexSet Name='Time'", "IndexSet", "Missing attribute: IndexSet Name", "", 0},
             {"<Unit Name='ms'/>", "<Foo/>", "Missing node: Unit", "", 0},
             {"VariablesDefinitions", "Variables", "Missing node: VariablesDefinitions", kIndex, 1},
             {"<TypedData Name='V'", "<Foo/><!-- --><?p?>text<Bar/><TypedData Name='V'",
              "Invalid node name: Foo; Invalid node name: Bar", kAll, 3},
             {"Name='V' ", "", "Empty attribute: Name", kIndex, 1},
             {"Type='Float'", "Type=''", "Empty attribute: Type", kIndex, 1},
             {"Type='Float'", "Type='float'", "Invalid attribute value: Type = float", kIndex, 1},
             {"'v'/>", "'v'><Unit/><Foo/><!-- --><Unit/></TypedData>", "Invalid node name: Foo", kAll, 3},
             {"Groups", "groups", "Missing node: Groups", kIndex, 1},
             {"<Group Name='A'>", "<Foo/><Group Name='A'>", "", kAll, 3},
             {"Group Name='B'", "Group", "Empty group name: Name", "Time[Time] A[v]", 1},
             {"<Line DataName='V'/>", "<Line DataName='V'/><Foo/>", "Invalid node name: Foo",
              "Time[Time] A[v]", 1},
             {"<Line DataName='V'/>", "<Line DataName='V'/><Line/>", "Empty attribute: DataName",
              "Time[Time] A[v]", 1},
             {"DataName='W'", "DataName='w'", "Data not found: w", "Time[Time] A[v] B[]", 1},
             {"RefLine Name='r'", "RefLine", "Missing attribute: Name", "Time[Time] A[v] B[w]", 1},
             {" Value='1'", "", "Missing attribute: Value", "Time[Time] A[v] B[w]", 1},
             {"Data>", "data>", "Missing node: Data", kAll, 1},
         }) {
        const Reading reading(QByteArray(base).replace(expected.replaced, expected.by));
        EXPECT_EQ(reading.problems, expected.problems) << expected.by;
        EXPECT_EQ(reading.Outline(), expected.outline) << expected.by;
        EXPECT_EQ(reading.data.GetMaxCount(), expected.samples) << expected.by;
        EXPECT_EQ(reading.name, expected.replaced == std::string_view("Analysis") ? "" : "Bend 1");
    }
}

TEST(XmlReader, ReportsADocumentThatDoesNotLoad) {
    EXPECT_EQ(Reading::FromFile("/no/such/file.xml", 0).problems, "Xml Parse error: File does not exist");

    QByteArray bomb = "<!DOCTYPE Analysis [<!ENTITY a0 'ha'>";
    for (int i = 1; i < 40; ++i)
        bomb += QString("<!ENTITY a%1 '%2'>").arg(i).arg(QString("&a%1;").arg(i - 1).repeated(10)).toLatin1();
    const QByteArray whole = OneGroup("<Line DataName='V'/>");
    for (const auto& [xml, reason] : std::initializer_list<std::pair<QByteArray, const char*>>{
             {bomb + "]>\n<Analysis Name='&a39;'/>",
              "file.xml (1): Entity declarations are not allowed (Error)\n"},
             {"", ""},
             {whole.left(whole.size() / 2), ""},
             {whole + "x", "file.xml (2): "},
             {"<Analysis Name='\xff'/>", "file.xml (1): "}}) {
        const Reading reading(xml);
        EXPECT_EQ(reading.problems.find("Xml Parse error: "), 0U) << xml.left(80).constData();
        EXPECT_NE(reading.problems.find(reason), std::string::npos) << reading.problems;
        EXPECT_FALSE(reading.data.HasData());
    }
}

TEST(XmlReader, NamesEveryCodeAlsoThoseItNeverRaises) {
    for (const auto& [code, text] :
         std::initializer_list<std::pair<int, const char*>>{{4, "Invalid attribute name"},
                                                            {6, "Invalid display type"},
                                                            {7, "Invalid set size"},
                                                            {0, "Unknown error"},
                                                            {13, "Unknown error"},
                                                            {-1, "Unknown error"}}) {
        EXPECT_EQ((ReadResult{static_cast<ResultCode>(code), "why"}.GetText()), QString(text) + ": why");
        EXPECT_EQ((ReadResult{static_cast<ResultCode>(code), ""}.GetText()), text);
    }
}

TEST(XmlReader, ReadsTheAttributesOfAGroup) {
    for (const auto& [attributes, read] :
         TextPairs{{"", "1 000"},
                   {"SizeRatio='5x' Expanded='no' SeparateSets=''", "1 110"},
                   {"SizeRatio='0x10' Expanded='0' Orientation='Inverted'", "16 001"},
                   {"SizeRatio='010' Expanded='false' SeparateSets='0'", "8 000"},
                   {"SizeRatio='-3' Expanded='False' Orientation='inverted'", "-3 100"},
                   {"SizeRatio='' Expanded='true' Orientation='Inverted '", "1 100"}}) {
        const Reading reading(Document("", "<Group Name='A' " + QByteArray(attributes) + "/>"));
        const CGraphDataGroup& group = reading.Group();
        EXPECT_EQ(QString("%1 %2%3%4")
                      .arg(group.m_nSizeRatio)
                      .arg(group.m_bExpanded)
                      .arg(group.m_bSeparateSets)
                      .arg(group.m_bInverted),
                  read)
            << attributes;
        EXPECT_EQ(group.m_nDisplayType, DisplayType::Both);
    }
}

TEST(XmlReader, GivesALineTheFirstUnitIfTheConsoleShowsIt) {
    constexpr const char* kTwo =
        "<Unit Name='mm' UnitOffset='1.5' UnitFactor='0.5' Precision='2'/><Unit Name='inch'/>";
    struct Case {
        const char* line;
        const char* units;
        const char* description;
    };
    for (const auto& [line, units, description] :
         {Case{"", kTwo, "y: (v + 1.5) * 0.5 mm, 2 decimals, shown 3"},
          Case{"UnitName='inch'", kTwo, "y: (v + 1.5) * 0.5 mm, 2 decimals, shown 3"},
          Case{"DisplayGraph='0'", kTwo, "y: (v + 1.5) * 0.5 mm, 2 decimals, shown 2"},
          Case{"DisplayConsole='false' UnitName='mm'", kTwo, "y: (v + 0) * 1 , 6 decimals, shown 1"},
          Case{"DisplayConsole='0' DisplayGraph='false'", kTwo, "y: (v + 0) * 1 , 6 decimals, shown 0"},
          Case{"DisplayConsole='no' IgnoreForVerticalAutoScaling=''", "",
               "y: (v + 0) * 1 , 0 decimals, shown 3, ignored"},
          Case{"", "<Unit/>", "y: (v + 0) * 1 , 3 decimals, shown 3"},
          Case{"", "<Unit UnitOffset='' UnitFactor='2x' Precision='2.5'/>",
               "y: (v + 0) * 1 , 3 decimals, shown 3"},
          Case{"", "<Unit UnitOffset=' 0x10' UnitFactor='-1e-1' Precision='-2'/>",
               "y: (v + 16) * -0.1 , -2 decimals, shown 3"}}) {
        const Reading reading(OneGroup("<Line DataName='V' " + QByteArray(line) + "/>",
                                       "<TypedData Name='V' Type='Long' Description='y'>" +
                                           QByteArray(units) + "</TypedData>"));
        EXPECT_EQ(Describe(reading.Set()), description) << line << units;
    }
}

TEST(XmlReader, PutsTheIndexSetFirstIntoAConsoleGroupOfItsOwn) {
    const Reading reading(OneGroup("").replace("'ms'", "'s' UnitOffset='-1.5' UnitFactor='0.5'"));
    const CGraphDataGroup& group = reading.Group(0);
    EXPECT_EQ(group.m_nDisplayType, DisplayType::Console);
    EXPECT_NE(dynamic_cast<const CGraphDataIndexSet*>(group.m_Sets.at(0)), nullptr);
    EXPECT_EQ(Describe(*group.m_Sets[0]), "Time: (v + -1.5) * 0.5 s, 3 decimals, shown 3");
    EXPECT_EQ(ColorsOf(group), std::vector<ColorRef>{0xFF8080});
}

TEST(XmlReader, ReadsReferenceLines) {
    struct Case {
        const char* attributes;
        double value;
        const char* description;
    };
    for (const auto& [attributes, value, description] :
         {Case{"Value='-2.5'", -2.5, "limit: (v + 0) * 1 , 6 decimals, shown 1, ignored"},
          Case{"Value=''", 0, "limit: (v + 0) * 1 , 6 decimals, shown 1, ignored"},
          Case{"Value='1 mm' DisplayConsole='1'", 0, "limit: (v + 0) * 1 , 6 decimals, shown 3, ignored"},
          Case{"Value='1e3' DisplayGraph='0' IgnoreForVerticalAutoScaling='0'", 1000,
               "limit: (v + 0) * 1 , 6 decimals, shown 0"}}) {
        const Reading reading(OneGroup("<RefLine Name='limit' " + QByteArray(attributes) + "/>"));
        EXPECT_EQ(reading.problems, "");
        EXPECT_EQ(Describe(reading.Set()), description) << attributes;
        EXPECT_EQ(reading.Set().GetValue(0, -1), value) << attributes;
        EXPECT_NE(dynamic_cast<const CGraphDataOwningFixedSet*>(&reading.Set()), nullptr);
        EXPECT_EQ(ColorsOf(reading.Group()), std::vector<ColorRef>{0x602020});
    }
}

TEST(XmlReader, ColoursSetsFromTwoPalettesThatRestartInEveryGroup) {
    const QByteArray variables = "<TypedData Name='o' Type='Byte'/><TypedData Name='b' Type='Binary'/>"
                                 "<TypedData Name='s' Type='Byte' Code='1'/>"
                                 "<TypedData Name='r' Type='Byte' Color='#0000FF'/>"
                                 "<TypedData Name='x' Type='Binary' Color='#12#34'/>"
                                 "<TypedData Name='z' Type='Byte' Color='#zz'/>";
    for (const auto& [lines, colors] : std::initializer_list<std::pair<const char*, std::vector<ColorRef>>>{
             {"ooooooooo",
              {0x00FF00, 0xFFCA82, 0x00FFFF, 0x1772F8, 0x0000FF, 0xFFFFFF, 0x8000FF, 0xFFFF00, 0x00FF00}},
             {"bbbbbbbb", {0xAAAA00, 0x0000AA, 0x00AAAA, 0xAA00AA, 0xAA8844, 0xAAAAAA, 0x00AA00, 0xAAAA00}},
             {"rosbxozb", {0x0000FF, 0x00FF00, 0xAAAA00, 0x1234, 0xFFCA82, 0, 0x0000AA}}}) {
        QByteArray group = "<Group Name='A'>";
        for (const char line : std::string_view(lines))
            group += "<Line DataName='" + QByteArray(1, line) + "'/>";
        group += "</Group>";
        const Reading reading(Document(variables, group + group));
        EXPECT_EQ(ColorsOf(reading.Group(1)), colors) << lines;
        EXPECT_EQ(ColorsOf(reading.Group(2)), colors) << lines;
    }
}

TEST(XmlReader, LeavesOutWhatTheAccessLevelDoesNotGrant) {
    for (const auto& [code, levels] : TextPairs{{"", "0123"},
                                                {"Code=''", "0123"},
                                                {"Code='2x'", "0123"},
                                                {"Code='-1'", "0123"},
                                                {"Code='1'", "123"},
                                                {"Code='0x3'", "3"},
                                                {"Code='7'", ""}}) {
        QString shown;
        for (int level = 0; level <= 3; ++level) {
            const Reading reading(OneGroup("<Line DataName='V'/>",
                                           "<TypedData Name='V' Type='Long' " + QByteArray(code) + "/>"),
                                  level);
            EXPECT_EQ(reading.problems, "");
            EXPECT_EQ(reading.data.GetSets().size(), 1 + reading.Group().m_Sets.size());
            shown += reading.Group().m_Sets.empty() ? QString() : QString::number(level);
        }
        EXPECT_EQ(shown, levels) << code;
    }
}

TEST(XmlReader, LinesFindTheFirstVariableOfTheirNameAndShareItsSamples) {
    const Reading reading(
        Document("<TypedData Name='V' Type='Short' Description='one'/>"
                 "<TypedData Name='V' Type='Short' Description='two'/><TypedData Name='v' Type='Byte'/>",
                 "<Group Name='A'><Line DataName='V'/><Line DataName='v'/><Line DataName='V'/></Group>",
                 "\n10,20,30\n11,21,31\n\n"));
    ASSERT_EQ(reading.Outline(), "Time[Time] A[one  one]");
    const std::vector<double> expected{10, 30, 10};
    for (size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(reading.Set(i).GetCount(), 3);
        EXPECT_EQ(reading.Set(i).GetValue(0, -1), 0.0);
        EXPECT_EQ(reading.Set(i).GetValue(1, -1), expected[i]);
    }
}

TEST(XmlReader, ReadsTheSamplesWithoutProblemsAndShowsMoreAtHigherLevels) {
    const QDir samples(SAMPLES_DIR);
    const QStringList names = samples.entryList({"bend*"});
    ASSERT_GE(names.size(), 7);
    for (const QString& name : names) {
        const QTemporaryDir folder;
        QString path = samples.filePath(name);
        const CExpandedAnalysis expanded(path, folder.path() + QDir::separator());
        if (name.endsWith(".paf"))
            path = expanded.Path();
        std::vector<size_t> sets;
        for (int level = 0; level <= 3; ++level) {
            const Reading reading = Reading::FromFile(path, level);
            EXPECT_EQ(reading.problems, "") << name.toStdString();
            EXPECT_FALSE(reading.name.isEmpty()) << name.toStdString();
            EXPECT_GT(reading.data.GetMaxCount(), 500) << name.toStdString();
            sets.push_back(reading.data.GetSets().size());
        }
        EXPECT_TRUE(std::ranges::is_sorted(sets)) << name.toStdString();
        EXPECT_GT(sets.back(), sets.front()) << name.toStdString();
    }
}
