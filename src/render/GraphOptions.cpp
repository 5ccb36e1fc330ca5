// What the graph shows on request: every event, a second recording behind the first, and no console.
#include "render/Graph.h"

#include <algorithm>

namespace Tracelyn {

void CGraph::ShowEveryEvent(CGraphWindow& window, bool show) {
    m_Options.everyEvent = show;
    window.Invalidate();
}

void CGraph::ShowConsole(CGraphWindow& window, bool show) {
    m_Options.console = show;
    window.Invalidate();
}

int CGraph::GetSamplesPerShownOne() const {
    const auto hasCurve = [](const auto& group) {
        return group->IsDisplayedAsGraph() && group->m_bExpanded && group->CountSets(DisplayType::Graph) > 0;
    };
    if (m_Options.everyEvent || std::ranges::none_of(m_Data.GetGroups(), hasCurve))
        return 1;
    return m_Canvas.GetTimeAxis().GetSamplesPerPixel();
}

void CGraph::ShowBehind(CGraphWindow& window, const CGraphData* other, int shift) {
    m_Options.behind.clear();
    m_Options.shift = shift;
    for (const auto& group : m_Data.GetGroups()) {
        for (const CGraphDataSet* set : group->m_Sets) {
            const CGraphDataSet* const behind =
                other == nullptr ? nullptr : other->FindCounterpart(*group, *set);
            if (behind != nullptr && behind->GetUnit() == set->GetUnit())
                m_Options.behind.emplace(set, behind);
        }
    }
    window.Invalidate();
}

} // namespace Tracelyn
