// The root of the model: everything that one analysis file contributes to the screen.
#pragma once

#include "model/GraphDataGroup.h"
#include "model/GraphDataSet.h"

#include <QMap>
#include <QString>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Tracelyn {

// Remembered expanded states: group name to "1" (expanded) or "0".
using GroupStates = QMap<QString, QString>;

// Owns every group and every set. List order is file order and display order.
class CGraphData {
public:
    CGraphData() = default;
    CGraphData(const CGraphData&) = delete;
    CGraphData& operator=(const CGraphData&) = delete;
    ~CGraphData() { Clear(); }
    // Exchanges all groups and sets, which stay where they are in memory.
    void Swap(CGraphData& other) noexcept {
        m_Groups.swap(other.m_Groups);
        m_Sets.swap(other.m_Sets);
    }

    void AddGroup(std::unique_ptr<CGraphDataGroup> group) { m_Groups.push_back(std::move(group)); }
    // Takes ownership. Only the constructors of the sets call it.
    void AddSet(CGraphDataSet* set) { m_Sets.emplace_back().reset(set); }
    // Creates a set against this root, which owns it.
    template <class Set, class... Arguments>
    Set& Make(Arguments&&... arguments) {
        return *new Set(*this, std::forward<Arguments>(arguments)...);
    }

    const std::vector<std::unique_ptr<CGraphDataGroup>>& GetGroups() const { return m_Groups; }
    const std::vector<std::unique_ptr<CGraphDataSet>>& GetSets() const { return m_Sets; }
    // The first of that name, null when there is none.
    CGraphDataSet* FindSet(const QString& name) const;
    CGraphDataGroup* FindGroup(const QString& name) const;
    // The first group of that name that is shown in the graph.
    CGraphDataGroup* FindGraphGroup(const QString& name) const;
    // The signal here that stands for that one of another model: of its name and kind (on/off or not), in the
    // first group of that group's name that is shown. Null when there is none, and for what is no sampled
    // signal.
    const CGraphDataSet* FindCounterpart(const CGraphDataGroup& group, const CGraphDataSet& set) const;
    bool HasData() const { return !m_Groups.empty() || !m_Sets.empty(); }
    // The largest sample count over all sets; 0 without sets.
    int GetMaxCount() const;

    // Selection: one group at a time among those shown in the graph.
    void SelectFirstGroup();
    // One step forward or back, without wrap-around. With no group selected both take the first of the list,
    // whether or not it is shown in the graph.
    void SelectNextGroup();
    void SelectPreviousGroup();
    // The n-th group shown in the graph, counting from 1. False, and none of them selected, when there is
    // none.
    bool SelectGroupByNumber(int n);
    void ToggleSelectedGroupExpanded();

    void SaveExpandedStates(GroupStates& states) const;
    // Groups that are not in the map keep their state.
    void RestoreExpandedStates(const GroupStates& states);

    // All delete the last created first.
    void DeleteAllSets() { KeepFirst(m_Groups.size(), 0); }
    void DeleteAllGroups() { KeepFirst(0, m_Sets.size()); }
    void Clear() { KeepFirst(0, 0); }
    // Deletes the groups and sets behind the first ones of those numbers.
    void KeepFirst(size_t groups, size_t sets);

private:
    template <class Iterator>
    void SelectNeighbour(Iterator group, Iterator end);

    std::vector<std::unique_ptr<CGraphDataGroup>> m_Groups;
    std::vector<std::unique_ptr<CGraphDataSet>> m_Sets;
};

} // namespace Tracelyn
