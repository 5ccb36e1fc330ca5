// Groups and the root that owns them: heights, selection, expanded states, ownership.
#include "ModelTesting.h"

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

TEST(GraphDataGroup, KeepsOnlyTheHeightThatBinarySetsNeed) {
    using Case = std::tuple<const char*, int, int>; // one letter a set, a capital one is binary
    for (const auto& [sets, together, separate] :
         {Case{"", 500, 500}, Case{"B", 28, 28}, Case{"GBB", 28, 42}, Case{"Gcn", 28, 28},
          Case{"GCNg", 500, 500}, Case{"CN", 500, 500}}) {
        CGraphData data;
        CGraphDataGroup group("group");
        for (const QChar letter : QString(sets)) {
            auto& set = data.Make<ListSet>("set");
            set.binary = letter.isUpper();
            set.SetDisplayType(ShownAt(letter));
            group.AddSet(&set);
        }
        EXPECT_EQ(group.GetEffectiveSizeRatio(), together < 500 ? 0 : 1) << sets;
        EXPECT_EQ(group.CalcHeight(500), together) << sets;
        EXPECT_EQ(group.CalcHeight(20), 20) << sets;
        group.m_bSeparateSets = true;
        EXPECT_EQ(group.CalcHeight(500), separate) << sets;
    }
}

TEST(Selection, StepsAndCountsAmongTheGroupsShownAsGraph) {
    using Case = std::array<const char*, 4>; // before, then first, next, previous
    constexpr std::array Steps = {&CGraphData::SelectFirstGroup, &CGraphData::SelectNextGroup,
                                  &CGraphData::SelectPreviousGroup};
    for (const Case& row :
         {Case{"", "", "", ""}, Case{"cgngb", "cGngb", "Cgngb", "Cgngb"},
          Case{"cgnGb", "cGngb", "cgngB", "cGngb"}, Case{"cgngB", "cGngb", "cgngB", "cgnGb"},
          Case{"CgNg", "cGng", "CgNg", "CgNg"}, Case{"GgG", "Ggg", "gGG", "GGg"}}) {
        for (size_t i = 0; i < Steps.size(); ++i) {
            CGraphData data;
            AddGroups(data, row[0]);
            (data.*Steps[i])();
            EXPECT_EQ(Letters(data), row[i + 1]) << row[0] << " " << i;
        }
    }
    for (const auto& [number, letters] : {std::pair{2, "CgnB"}, {3, "Cgnb"}}) {
        CGraphData data;
        AddGroups(data, "CGnB");
        EXPECT_EQ(data.SelectGroupByNumber(number), number == 2);
        EXPECT_EQ(Letters(data), letters);
    }
}

TEST(ExpandedStates, AreRememberedByNameAndOnlyZeroCollapses) {
    CGraphData data;
    AddGroups(data, "CgBG");
    data.ToggleSelectedGroupExpanded(); // the first that is selected and shown as graph
    GroupStates states{{"gone", "0"}};
    data.SaveExpandedStates(states);
    EXPECT_EQ(states, (GroupStates{{"c", "1"}, {"g", "1"}, {"b", "0"}}));
    for (const auto& [text, saved] : {std::pair{"0", "0"}, std::pair{"false", "1"}, std::pair{"", "1"}}) {
        data.RestoreExpandedStates({{"g", text}});
        data.SaveExpandedStates(states);
        EXPECT_EQ(states, (GroupStates{{"c", "1"}, {"g", saved}, {"b", "0"}}));
    }
}

TEST(GraphData, DeletesTheSetsOfItsGroupsLastCreatedFirst) {
    static QString log;
    struct Logged : ListSet {
        using ListSet::ListSet;
        ~Logged() override { log += GetName(); }
    };
    {
        CGraphData data;
        CGraphDataGroup group("g");
        for (const char* name : {"a", "b", "c", "b"})
            group.AddSet(&data.Make<Logged>(name));
        group.RemoveSet("b");
        EXPECT_EQ(group.m_Sets.back(), data.GetSets().back().get()) << "only the first of that name";
    }
    EXPECT_EQ(log, "bcba");
}
