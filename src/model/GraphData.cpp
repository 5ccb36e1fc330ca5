#include "model/GraphData.h"

#include <algorithm>
#include <iterator>

namespace Tracelyn {

namespace {

bool IsGraphGroup(const std::unique_ptr<CGraphDataGroup>& group) {
    return group->IsDisplayedAsGraph();
}

bool IsSelectedGraphGroup(const std::unique_ptr<CGraphDataGroup>& group) {
    return IsGraphGroup(group) && group->m_bSelected;
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

CGraphDataGroup* CGraphData::FindGraphGroup(const QString& name) const {
    const auto found = std::ranges::find_if(
        m_Groups, [&](const auto& group) { return IsGraphGroup(group) && group->m_strName == name; });
    return found == m_Groups.end() ? nullptr : found->get();
}

const CGraphDataSet* CGraphData::FindCounterpart(const CGraphDataGroup& group,
                                                 const CGraphDataSet& set) const {
    const auto sameGroup = std::ranges::find_if(m_Groups, [&](const auto& own) {
        return own->m_nDisplayType != DisplayType::None && own->m_strName == group.m_strName;
    });
    if (sameGroup == m_Groups.end() || set.GetStore() == nullptr)
        return nullptr;
    const auto& sets = (*sameGroup)->m_Sets;
    const auto found = std::ranges::find_if(sets, [&](const CGraphDataSet* own) {
        return own->GetStore() != nullptr && own->IsBinary() == set.IsBinary() &&
               own->GetName() == set.GetName();
    });
    return found == sets.end() ? nullptr : *found;
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

template <class Iterator>
void CGraphData::SelectNeighbour(Iterator group, Iterator end) {
    group = std::find_if(group, end, IsSelectedGraphGroup);
    if (group == end) {
        if (!m_Groups.empty())
            m_Groups.front()->m_bSelected = true;
        return;
    }
    const Iterator next = std::find_if(std::next(group), end, IsGraphGroup);
    if (next != end) {
        (*group)->m_bSelected = false;
        (*next)->m_bSelected = true;
    }
}

void CGraphData::SelectNextGroup() {
    SelectNeighbour(m_Groups.begin(), m_Groups.end());
}

void CGraphData::SelectPreviousGroup() {
    SelectNeighbour(m_Groups.rbegin(), m_Groups.rend());
}

bool CGraphData::SelectGroupByNumber(int n) {
    int number = 0;
    for (const auto& group : m_Groups) {
        if (IsGraphGroup(group))
            group->m_bSelected = ++number == n;
    }
    return n >= 1 && n <= number;
}

void CGraphData::ToggleSelectedGroupExpanded() {
    const auto selected = std::ranges::find_if(m_Groups, IsSelectedGraphGroup);
    if (selected != m_Groups.end())
        (*selected)->m_bExpanded = !(*selected)->m_bExpanded;
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

void CGraphData::KeepFirst(size_t groups, size_t sets) {
    while (m_Sets.size() > sets) {
        m_Sets.back().reset();
        m_Sets.pop_back();
    }
    while (m_Groups.size() > groups) {
        const std::unique_ptr<CGraphDataGroup> last = std::move(m_Groups.back());
        m_Groups.pop_back();
    }
}

} // namespace Tracelyn
