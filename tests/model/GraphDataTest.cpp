// Groups: selection and expanded states.
#include "ModelTesting.h"

namespace {

// One letter a group: nowhere, as graph, in the console, in both; a capital one is selected.
void AddGroups(CGraphData& data, const QString& letters) {
    for (const QChar letter : letters) {
        auto group = std::make_unique<CGraphDataGroup>(QString(letter.toLower()));
        group->m_nDisplayType = static_cast<DisplayType>(QString("ngcb").indexOf(letter.toLower()));
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
