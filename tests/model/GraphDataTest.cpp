// Groups and the root that owns them: counting, heights, selection, expanded states, ownership.
#include "ModelTesting.h"

#include <optional>
#include <string>

namespace {

// Where a letter's group or set is shown: nowhere, as graph, in the console, in both.
DisplayType ShownAt(QChar letter) {
    return static_cast<DisplayType>(QStringLiteral("ngcb").indexOf(letter.toLower()));
}

// One letter a group, a capital one is selected.
void AddGroups(CGraphData& data, const QString& letters) {
    for (const QChar letter : letters) {
        auto group = std::make_unique<CGraphDataGroup>(QString(letter.toLower()));
        group->m_nDisplayType = ShownAt(letter);
        group->m_bSelected = letter.isUpper();
        data.AddGroup(std::move(group));
    }
}

std::string Letters(const CGraphData& data) {
    QString letters;
    for (const auto& group : data.GetGroups())
        letters += group->m_bSelected ? group->m_strName.toUpper() : group->m_strName;
    return letters.toStdString();
}

} // namespace

TEST(GraphDataGroup, CountsItsSetsAndKeepsOnlyTheHeightThatBinarySetsNeed) {
    struct Case {
        const char* sets; // one letter a set, a capital one is binary
        int graph, binaryGraph, console, nowhere;
        bool binaryOnly;
        int together, separate;
    };
    for (const Case& expected :
         {Case{"", 0, 0, 0, 0, false, 500, 500}, Case{"B", 1, 1, 1, 1, true, 28, 28},
          Case{"GBB", 3, 3, 2, 2, true, 28, 42}, Case{"Gcn", 1, 1, 1, 1, true, 28, 28},
          Case{"GCNg", 2, 1, 1, 1, false, 500, 500}, Case{"CN", 0, 0, 1, 1, false, 500, 500},
          Case{"bgB", 3, 1, 2, 2, false, 500, 500}}) {
        CGraphData data;
        CGraphDataGroup group("group");
        for (const QChar letter : QString(expected.sets)) {
            auto& set = data.Make<ListSet>("set", std::vector<double>{}, letter.isUpper());
            set.SetDisplayType(ShownAt(letter));
            group.AddSet(&set);
        }
        EXPECT_EQ(group.CountSets(DisplayType::Graph), expected.graph) << expected.sets;
        EXPECT_EQ(group.CountBinarySets(DisplayType::Graph), expected.binaryGraph) << expected.sets;
        EXPECT_EQ(group.CountNonBinarySets(DisplayType::Graph), expected.graph - expected.binaryGraph);
        EXPECT_EQ(group.CountSets(DisplayType::Console), expected.console) << expected.sets;
        EXPECT_EQ(group.CountSets(DisplayType::None), expected.nowhere) << expected.sets;
        group.m_nSizeRatio = 4;
        EXPECT_EQ(group.GetEffectiveSizeRatio(), expected.binaryOnly ? 0 : 4) << expected.sets;
        EXPECT_EQ(group.CalcHeight(500), expected.together) << expected.sets;
        EXPECT_EQ(group.CalcHeight(20), 20) << expected.sets;
        group.m_bSeparateSets = true;
        EXPECT_EQ(group.CalcHeight(500), expected.separate) << expected.sets;
        EXPECT_EQ(group.m_nHeight, expected.separate) << expected.sets;
    }
}

TEST(Selection, StepsAmongTheGroupsShownAsGraph) {
    struct Case {
        const char* before;
        const char* first;
        const char* next;
        const char* previous;
    };
    for (const Case& expected :
         {Case{"", "", "", ""}, Case{"cgngb", "cGngb", "Cgngb", "Cgngb"},
          Case{"cGngb", "cGngb", "cgnGb", "cGngb"}, Case{"cgnGb", "cGngb", "cgngB", "cGngb"},
          Case{"cgngB", "cGngb", "cgngB", "cgnGb"}, Case{"CgNg", "cGng", "CgNg", "CgNg"},
          Case{"GgG", "Ggg", "gGG", "GGg"}, Case{"cn", "cn", "Cn", "Cn"}}) {
        const auto after = [&](void (CGraphData::*select)()) {
            CGraphData data;
            AddGroups(data, expected.before);
            (data.*select)();
            return Letters(data);
        };
        EXPECT_EQ(after(&CGraphData::SelectFirstGroup), expected.first) << expected.before;
        EXPECT_EQ(after(&CGraphData::SelectNextGroup), expected.next) << expected.before;
        EXPECT_EQ(after(&CGraphData::SelectPreviousGroup), expected.previous) << expected.before;
    }
}

TEST(Selection, ByNumberCountsTheGroupsShownAsGraphFromOne) {
    for (const auto& [number, expected] : std::initializer_list<std::pair<int, const char*>>{
             {1, "CGnb"}, {2, "CgnB"}, {3, "Cgnb"}, {0, "Cgnb"}, {-1, "Cgnb"}}) {
        CGraphData data;
        AddGroups(data, "CGnB");
        EXPECT_EQ(data.SelectGroupByNumber(number), number == 1 || number == 2) << number;
        EXPECT_EQ(Letters(data), expected) << number;
    }
}

TEST(ExpandedStates, ToggleOnlyTheFirstSelectedGroupThatIsShownAsGraph) {
    CGraphData data;
    AddGroups(data, "CgBG");
    data.ToggleSelectedGroupExpanded();
    for (const auto& group : data.GetGroups())
        EXPECT_EQ(group->m_bExpanded, group->m_strName != "b");
}

TEST(ExpandedStates, AreRememberedByNameAndOnlyZeroCollapses) {
    GroupStates states{{"gone", "0"}};
    CGraphData data;
    AddGroups(data, "cgg");
    data.GetGroups()[0]->m_bExpanded = false;
    data.GetGroups()[1]->m_bExpanded = false;
    data.SaveExpandedStates(states);
    EXPECT_EQ(states, (GroupStates{{"c", "0"}, {"g", "1"}}));

    for (const char* text : {"0", "1", "false", "no", "", "00"}) {
        const bool expanded = text != std::string_view("0");
        data.GetGroups()[1]->m_bExpanded = data.GetGroups()[2]->m_bExpanded = !expanded;
        data.RestoreExpandedStates({{"g", text}, {"other", "1"}});
        EXPECT_EQ(data.GetGroups()[1]->m_bExpanded, expanded) << text;
        EXPECT_EQ(data.GetGroups()[2]->m_bExpanded, expanded) << text;
        EXPECT_FALSE(data.GetGroups()[0]->m_bExpanded) << "not in the map";
    }
}

TEST(GraphData, OwnsListedAndUnlistedSetsAndDeletesTheLastCreatedFirst) {
    class Logged : public ListSet {
    public:
        Logged(CGraphData& root, const QString& name, QString& log) : ListSet(root, name), m_Log(log) {}
        ~Logged() override { m_Log += GetName(); }

    private:
        QString& m_Log;
    };
    for (const bool clear : {true, false}) {
        QString log;
        std::optional<CGraphData> data(std::in_place);
        for (const char* name : {"a", "b", "c", "b"})
            data->Make<Logged>(name, log);
        AddGroups(*data, "g");
        CGraphDataGroup& group = *data->FindGroup("g");
        for (const auto& set : data->GetSets())
            group.AddSet(set.get());
        group.RemoveSet("x");
        group.RemoveSet("b");
        ASSERT_EQ(group.m_Sets.size(), 3U);
        EXPECT_EQ(group.m_Sets.back(), data->GetSets().back().get());
        EXPECT_EQ(data->FindSet("b"), data->GetSets()[1].get());
        EXPECT_EQ(data->FindSet("B"), nullptr);
        EXPECT_EQ(log, "");
        if (clear) {
            EXPECT_TRUE(data->HasData());
            data->Clear();
            EXPECT_FALSE(data->HasData());
        }
        data.reset();
        EXPECT_EQ(log, "bcba");
    }
}
