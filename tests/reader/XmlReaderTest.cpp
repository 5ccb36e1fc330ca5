// From small documents to the model and the problems found.
#include "ReaderTesting.h"
#include "model/GraphDataVariants.h"

#include <cstdlib>
#include <new>

static std::atomic<int> g_allocationsLeft = -1; // those after them fail; negative: none does
static std::atomic<bool> g_ranOut = false;

void* operator new(size_t size) {
    const bool fails = g_allocationsLeft == 0;
    if (fails)
        g_ranOut = true;
    else if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    void* const memory = fails ? nullptr : std::malloc(size == 0 ? 1 : size);
    return memory ? memory : throw std::bad_alloc();
}

// Inlined, they would look to the compiler as if they freed what another operator had made.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

// A model read from a text, and the words of the problems, "; " between them.
class Reading {
public:
    explicit Reading(const QByteArray& xml, int level = 0, int allocations = -1) {
        const TestFolder folder;
        const QString path = folder.Write("a.xml", xml);
        CXmlReader reader;
        reader.SetAccessLevel(level);
        g_ranOut = false;
        g_allocationsLeft = allocations;
        reader.ReadAnalysis(data, path);
        ranOut = g_ranOut;
        g_allocationsLeft = -1;
        for (const ReadResult& result : reader.GetResults())
            problems += (problems.empty() ? "" : "; ") + result.GetText().toStdString();
    }

    // "group: set=sample,sample set=sample group: ..."
    std::string Outline() const {
        QString text;
        for (const auto& group : data.GetGroups()) {
            text += group->m_strName + ": ";
            for (const CGraphDataSet* set : group->m_Sets) {
                text += set->GetName();
                for (int i = 0; i < set->GetCount(); ++i)
                    text += (i == 0 ? "=" : ",") + QString::number(set->GetValue(i, -1));
                text += " ";
            }
        }
        return text.trimmed().toStdString();
    }
    const CGraphDataGroup& Group(size_t at = 1) const { return *data.GetGroups().at(at); }

    CGraphData data;
    std::string problems;
    bool ranOut = false; // of allocations
};

std::string Describe(const CGraphDataSet& set) {
    return QString::asprintf("+%g *%g %s .%d shown %d%s", double{set.GetUnitOffset()},
                             double{set.GetUnitFactor()}, set.GetUnit().toUtf8().constData(),
                             set.GetPrecision(), static_cast<int>(set.GetDisplayType()),
                             set.IsIgnoredForVerticalAutoScaling() ? " ignored" : "")
        .toStdString();
}

} // namespace

TEST(XmlReader, StopsOnlyWhereItCannotGoOnAndKeepsWhatItHasByThen) {
    const QByteArray base = Document(
        "<TypedData Name='V' Type='Long' Description='v'/><TypedData Name='W' Type='Float' Description='w'/>",
        "<Group Name='A'><Line DataName='V'/></Group><Group Name='B'><Line DataName='W'/><RefLine Name='r' "
        "Value='1'/></Group>",
        "1,2\n3,4");
    constexpr const char* kAll = "Time: Time=0 A: v=1,3 B: w=2,4 r=1";
    constexpr const char* kIndex = "Time: Time=0";
    using Case = std::tuple<const char*, const char*, const char*, const char*>;
    for (const auto& [replaced, by, problems, outline] :
         {Case{"V", "V", "", kAll},
          Case{"3,4", "3,4\r\n\r\n\r\n", "", kAll},
          Case{"2\n", "2\r\n", "", kAll},
          Case{"Analysis", "analysis", "Invalid root name: analysis", ""},
          Case{"DataDefinition", "Definition", "Missing node: DataDefinition; Missing node: IndexSet", ""},
          Case{"IndexSet", "indexset", "Missing node: IndexSet", ""},
          Case{"Name='Time'", "", "Missing attribute: IndexSet Name", ""},
          Case{"Unit", "Foo", "Missing node: Unit", ""},
          Case{"VariablesDefinitions", "Variables", "Missing node: VariablesDefinitions", kIndex},
          Case{"<TypedData Name='V'", "<Foo/><!-- -->text<Bar/><TypedData Name='V'",
               "Invalid node name: Foo; Invalid node name: Bar", kAll},
          Case{"Name='V' ", "", "Empty attribute: Name", kIndex},
          Case{"Type='Float'", "Type=''", "Empty attribute: Type", kIndex},
          Case{"Type='Float'", "Type='float'", "Invalid attribute value: Type = float", kIndex},
          Case{"'v'/>", "'v'><Foo/></TypedData>", "Invalid node name: Foo", kAll},
          Case{"Groups", "groups", "Missing node: Groups", kIndex},
          Case{"<Group Name='A'>", "<Foo/><Group Name='A'>", "", kAll},
          Case{"Group Name='B'", "Group", "Empty group name: Name", "Time: Time=0 A: v"},
          Case{"<Line DataName='W'/>", "<Foo/>", "Invalid node name: Foo", "Time: Time=0 A: v B:"},
          Case{"Line DataName='W'", "Line", "Empty attribute: DataName", "Time: Time=0 A: v B:"},
          Case{"DataName='W'", "DataName='w'", "Data not found: w", "Time: Time=0 A: v B:"},
          Case{"RefLine Name='r'", "RefLine", "Missing attribute: Name", "Time: Time=0 A: v B: w"},
          Case{" Value='1'", "", "Missing attribute: Value", "Time: Time=0 A: v B: w"},
          Case{"Data>", "data>", "Missing node: Data", "Time: Time=0 A: v B: w r=1"},
          Case{"<TypedData Name='W'", "<TypedData Name='V' Type='Byte'/><TypedData Name='W'", "",
               "Time: Time=0 A: v=1,3 B: w=1,3 r=1"},
          Case{"DataName='W'", "DataName='V'", "", "Time: Time=0 A: v=1,3 B: v=1,3 r=1"}}) {
        const Reading reading(QByteArray(base).replace(replaced, by));
        EXPECT_EQ(reading.problems, problems) << by;
        EXPECT_EQ(reading.Outline(), outline) << by;
    }
    const Reading cut(base.left(base.size() / 2));
    EXPECT_EQ(cut.problems.find("Xml Parse error: "), 0U) << cut.problems;
}

TEST(XmlReader, ReadsTheAttributesOfAGroup) {
    for (const auto& [attributes, expected] :
         {std::pair{"", std::tuple(1, false, false, false)},
          {"SizeRatio='-3' Expanded='true' Orientation='inverted'", {-3, true, false, false}},
          {"SizeRatio='16' SeparateSets='1' Orientation='Inverted'", {16, false, true, true}}}) {
        const Reading reading(Document("", "<Group Name='A' " + QByteArray(attributes) + "/>"));
        const CGraphDataGroup& group = reading.Group();
        EXPECT_EQ(std::tuple(group.m_nSizeRatio, group.m_bExpanded, group.m_bSeparateSets, group.m_bInverted),
                  expected);
    }
}

TEST(XmlReader, GivesALineTheFirstUnitIfTheConsoleShowsIt) {
    constexpr const char* kTwo =
        "<Unit Name='mm' UnitOffset='1.5' UnitFactor='0.5' Precision='2'/><Unit Name='inch'/>";
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [line, units, description] :
         {Case{"<Line DataName='V' UnitName='inch'/>", kTwo, "+1.5 *0.5 mm .2 shown 3"},
          Case{"<Line DataName='V' DisplayGraph='0'/>", kTwo, "+1.5 *0.5 mm .2 shown 2"},
          Case{"<Line DataName='V' DisplayConsole='false'/>", kTwo, "+0 *1  .6 shown 1"},
          Case{"<Line DataName='V' DisplayConsole='0' DisplayGraph='0'/>", kTwo, "+0 *1  .6 shown 0"},
          Case{"<Line DataName='V' IgnoreForVerticalAutoScaling='1'/>", "", "+0 *1  .0 shown 3 ignored"},
          Case{"<Line DataName='V'/>", "<Unit UnitFactor='2x'/>", "+0 *1  .3 shown 3"},
          Case{"<RefLine Name='r' Value=''/>", "", "+0 *1  .6 shown 1 ignored"},
          Case{"<RefLine Name='r' Value='1' DisplayConsole='1'/>", "", "+0 *1  .6 shown 3 ignored"},
          Case{"<RefLine Name='r' Value='1' DisplayGraph='0' IgnoreForVerticalAutoScaling='0'/>", "",
               "+0 *1  .6 shown 0"}}) {
        const Reading reading(
            Document("<TypedData Name='V' Type='Long'>" + QByteArray(units) + "</TypedData>",
                     "<Group Name='A'>" + QByteArray(line) + "</Group>"));
        EXPECT_EQ(Describe(*reading.Group().m_Sets.at(0)), description) << line << units;
        EXPECT_EQ(Describe(*reading.Group(0).m_Sets.at(0)), "+-1.5 *1 s .3 shown 3");
        EXPECT_EQ(reading.Group(0).m_nDisplayType, DisplayType::Console);
    }
}

TEST(XmlReader, ColoursSetsFromTwoPalettesThatRestartInEveryGroup) {
    const QByteArray variables =
        "<TypedData Name='o' Type='Byte'/><TypedData Name='b' Type='Binary'/>"
        "<TypedData Name='s' Type='Byte' Code='1'/><TypedData Name='r' Type='Byte' Color='#0000FF'/>"
        "<TypedData Name='x' Type='Binary' Color='#12#34'/>";
    using Case = std::pair<const char*, const char*>;
    for (const auto& [lines, colors] :
         {Case{"ooooooooo", "ff00 ffca82 ffff 1772f8 ff ffffff 8000ff ffff00 ff00 602020"},
          Case{"bbbbbbbb", "aaaa00 aa aaaa aa00aa aa8844 aaaaaa aa00 aaaa00 602020"},
          Case{"rosbxob", "ff ff00 aaaa00 1234 ffca82 aa 602020"}}) {
        QByteArray group = "<Group Name='A'>";
        for (const char line : std::string_view(lines))
            group += "<Line DataName='" + QByteArray(1, line) + "'/>";
        group += "<RefLine Name='r' Value='1'/></Group>";
        const Reading reading(Document(variables, group + group));
        QStringList found;
        for (const auto& set : reading.data.GetSets())
            found += QString::number(set->GetColor(), 16);
        EXPECT_EQ(found.join(" "), QString("ff8080 %1 %1").arg(colors));
    }
}

TEST(XmlReader, LeavesOutWhatTheAccessLevelDoesNotGrant) {
    QByteArray variables;
    for (const char* code : {"", "2x", "-1", "1", "3", "7"})
        variables +=
            QString("<TypedData Name='V%1' Description='%1' Type='Byte' Code='%1'/>").arg(code).toLatin1();
    const QByteArray lines = QByteArray(variables).replace("TypedData ", "Line Data");
    const QByteArray xml = Document(variables, "<Group Name='A'>" + lines + "</Group>");
    for (const auto& [level, more] : {std::pair{0, ""}, {2, " 1=0"}, {3, " 1=0 3=0"}})
        EXPECT_EQ(Reading(xml, level).Outline(), std::string("Time: Time=0 A: =0 2x=0 -1=0") + more);
}

TEST(XmlReader, TurnsAnExceptionIntoAResultWhicheverAllocationFails) {
    const QByteArray xml =
        Document("<TypedData Name='V' Type='Short' Description='v' Color='#0000FF'/><TypedData Name='B' "
                 "Type='Binary'/>",
                 "<Group Name='A group with a long name'><Line DataName='V'/><Line DataName='B'/><RefLine "
                 "Name='r' Value='1'/></Group>",
                 "1,0");
    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        const Reading reading(xml, 0, failures);
        failed = reading.ranOut;
        ASSERT_EQ(reading.problems, failed ? "Unknown error: Unknown exception" : "")
            << "at allocation " << failures;
        for (const auto& set : reading.data.GetSets())
            EXPECT_TRUE(set->GetName() != "v" || set->GetCount() == 0 || set->GetValue(0, -1) == 1);
    }
    EXPECT_GT(failures, 20);
}

TEST(XmlReader, ShowsOnlyTheBeginningOfLongDetails) {
    const QByteArray longName(500'000, 'x');
    const std::string shown = std::string(400, 'x') + "\u2026";
    for (const auto& [xml, problem] :
         {std::pair{"<" + longName + "/>", "Invalid root name: " + shown},
          {Document("<" + longName + "/>", ""), "Invalid node name: " + shown},
          {Document("<" + longName.left(400) + "/>", ""), "Invalid node name: " + std::string(400, 'x')},
          {Document("<" + longName.left(399) + "\xF0\x90\x80\x80/>", ""),
           "Invalid node name: " + std::string(399, 'x') + "\u2026"}})
        EXPECT_EQ(Reading(xml).problems, problem);
}

TEST(XmlReader, CutsWhatIsTooLongOrTooManyAndSaysSo) {
    const QByteArray variable = "<TypedData Name='V' Type='Long'/>";
    const QByteArray name(20'000, 'n');
    const auto lines = [](int count, const QByteArray& last = "") {
        return "<Group Name='A'>" + QByteArray("<Line DataName='V'/>").repeated(count) + last + "</Group>";
    };
    const auto rows = [](int count) { return QByteArray("5\n").repeated(count); };
    using Case = std::tuple<QByteArray, size_t, const char*>; // with the sets and the end of the problems
    for (const auto& [xml, sets, problem] :
         {Case{Document(variable, lines(1).repeated(10'001), "5"), 10'000,
               "Only 10000 groups are shown, and there are more"},
          Case{Document(variable, lines(10'020), "5"), 10'000,
               "Only 10000 signals are shown, and there are more"},
          Case{Document(variable.repeated(10'002), lines(1), "5"), 2,
               "Only 10000 variables are shown, and there are more"},
          Case{Document(variable.repeated(10'000) + "<TypedData Name='W' Type='Long'/>",
                        lines(1, "<Line DataName='W'/><Line DataName='V'/>"), "5"),
               3, "Only 10000 variables are shown, and there are more"},
          Case{Document(variable + "<TypedData Name='" + name + "' Type='Long'/>", lines(1), "5"), 2,
               "A Name of 20000 characters is cut off"},
          // lines cost no rows
          Case{Document(variable, lines(9999), rows(1200)), 10'000, ""},
          // however many problems there are
          Case{Document(variable + QByteArray("<Bad/>").repeated(1002), lines(10'020), rows(7000)), 10'000,
               "Only 10000 signals are shown, and there are more; "
               "Unknown error: There are 2 more problems"}}) {
        const Reading reading(xml);
        const size_t at = reading.problems.find("Unknown error: ");
        EXPECT_EQ(at == std::string::npos ? "" : reading.problems.substr(at + 15), problem);
        EXPECT_EQ(reading.data.GetSets().size(), sets);
        EXPECT_EQ(reading.Group().m_Sets.at(0)->GetValue(0, -1), 5);
    }
}
