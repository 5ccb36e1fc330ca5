// One band of the picture: a named list of sets, how it wants to be shown, and where the layout put it.
#pragma once

#include "model/GraphDataSet.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace Tracelyn {

// Lists its sets without owning them.
class CGraphDataGroup {
public:
    explicit CGraphDataGroup(const QString& name) : m_strName(name) {}

    void AddSet(CGraphDataSet* set) { m_Sets.push_back(set); }
    // Unlists the first set of that name, which stays alive; no effect when there is none.
    void RemoveSet(const QString& name);

    // Listed sets whose display type is `type` or Both.
    int CountSets(DisplayType type) const;
    int CountBinarySets(DisplayType type) const;
    int CountNonBinarySets(DisplayType type) const;
    // All sets shown in the graph are on/off signals, and there is at least one.
    bool IsBinaryOnly() const;

    // The band's height in pixels out of those available: a binary-only group takes no more than it needs.
    int CalcHeight(int available);
    // A binary-only group takes no share of the free height.
    int GetEffectiveSizeRatio() const { return IsBinaryOnly() ? 0 : m_nSizeRatio; }

    bool IsDisplayedAsGraph() const { return IsShownInGraph(m_nDisplayType); }
    bool IsDisplayedInConsole() const { return IsShownInConsole(m_nDisplayType); }

    QString m_strName;
    std::vector<CGraphDataSet*> m_Sets;
    int32_t m_nSizeRatio = 1;
    bool m_bSeparateSets = false;
    int32_t m_nSetGap = 0;
    bool m_bExpanded = true;
    bool m_bSelected = false;
    // Written by the layout, in pixels; the console lines are a count.
    int32_t m_nHeight = 0;
    int32_t m_nTop = 0;
    int32_t m_nTopMargin = 0;
    int32_t m_nBottomMargin = 0;
    int32_t m_nConsoleLines = 0;
    DisplayType m_nDisplayType = DisplayType::Both;
    bool m_bInverted = false;
};

} // namespace Tracelyn
