#include "GraphData.h"

#include <algorithm>
#include <ranges>

namespace {

bool IsGraphGroup(const std::unique_ptr<CGraphDataGroup>& group) {
    return group->IsDisplayedAsGraph();
}

} // namespace

CGraphDataSet* CGraphData::FindSet(const QString& name) const {
    const auto found = std::ranges::find_if(m_Sets, [&](const auto& set) { return set->GetName() == name; });
    return found == m_Sets.end() ? nullptr : found->get();
}

CGraphDataGroup* CGraphData::FindGroup(const QString& name) const {
    const auto found =
        std::ranges::find_if(m_Groups, [&](const auto& group) { return group->m_strName == name; });
    return found == m_Groups.end() ? nullptr : found->get();
}

int CGraphData::GetMaxCount() const {
    int count = 0;
    for (const auto& set : m_Sets)
        count = std::max(count, set->GetCount());
    return count;
}

void CGraphData::SelectFirstGroup() {
    bool selected = false;
    for (const auto& group : m_Groups) {
        group->m_bSelected = !selected && group->IsDisplayedAsGraph();
        selected = selected || group->m_bSelected;
    }
}

template <class Range>
void CGraphData::SelectNeighbour(Range&& groups) {
    CGraphDataGroup* selected = nullptr;
    for (const auto& group : groups) {
        if (!IsGraphGroup(group))
            continue;
        if (selected != nullptr) {
            selected->m_bSelected = false;
            group->m_bSelected = true;
            return;
        }
        if (group->m_bSelected)
            selected = group.get();
    }
    if (selected == nullptr && !m_Groups.empty())
        m_Groups.front()->m_bSelected = true;
}

void CGraphData::SelectNextGroup() {
    SelectNeighbour(m_Groups);
}

void CGraphData::SelectPreviousGroup() {
    SelectNeighbour(std::views::reverse(m_Groups));
}

bool CGraphData::SelectGroupByNumber(int n) {
    int number = 0;
    for (const auto& group : m_Groups | std::views::filter(IsGraphGroup))
        group->m_bSelected = ++number == n;
    return n >= 1 && n <= number;
}

void CGraphData::ToggleSelectedGroupExpanded() {
    for (const auto& group : m_Groups | std::views::filter(IsGraphGroup)) {
        if (group->m_bSelected) {
            group->m_bExpanded = !group->m_bExpanded;
            return;
        }
    }
}

void CGraphData::SaveExpandedStates(GroupStates& states) const {
    states.clear();
    for (const auto& group : m_Groups)
        states.insert(group->m_strName, group->m_bExpanded ? QStringLiteral("1") : QStringLiteral("0"));
}

void CGraphData::RestoreExpandedStates(const GroupStates& states) {
    for (const auto& group : m_Groups) {
        const auto found = states.find(group->m_strName);
        if (found != states.end())
            group->m_bExpanded = *found != QLatin1String("0");
    }
}

void CGraphData::DeleteAllSets() {
    while (!m_Sets.empty()) {
        m_Sets.back().reset();
        m_Sets.pop_back();
    }
}

void CGraphData::DeleteAllGroups() {
    while (!m_Groups.empty()) {
        const std::unique_ptr<CGraphDataGroup> last = std::move(m_Groups.back());
        m_Groups.pop_back();
    }
}

void CGraphData::Clear() {
    DeleteAllSets();
    DeleteAllGroups();
}
