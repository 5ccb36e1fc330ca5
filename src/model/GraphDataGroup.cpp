#include "model/GraphDataGroup.h"

#include <algorithm>

namespace Tracelyn {

namespace {

constexpr int kBinaryLane = 7;
constexpr int kBinaryExtraLanes = 3;
constexpr int kBinaryTogether = 28;

bool Counts(const CGraphDataSet& set, DisplayType type) {
    return set.GetDisplayType() == type || set.GetDisplayType() == DisplayType::Both;
}

} // namespace

void CGraphDataGroup::RemoveSet(const QString& name) {
    const auto found = std::ranges::find(m_Sets, name, &CGraphDataSet::GetName);
    if (found != m_Sets.end())
        m_Sets.erase(found);
}

int CGraphDataGroup::CountSets(DisplayType type) const {
    return CountBinarySets(type) + CountNonBinarySets(type);
}

int CGraphDataGroup::CountBinarySets(DisplayType type) const {
    return static_cast<int>(std::ranges::count_if(
        m_Sets, [type](const CGraphDataSet* set) { return Counts(*set, type) && set->IsBinary(); }));
}

int CGraphDataGroup::CountNonBinarySets(DisplayType type) const {
    return static_cast<int>(std::ranges::count_if(
        m_Sets, [type](const CGraphDataSet* set) { return Counts(*set, type) && !set->IsBinary(); }));
}

bool CGraphDataGroup::IsBinaryOnly() const {
    return CountBinarySets(DisplayType::Graph) >= 1 && CountNonBinarySets(DisplayType::Graph) == 0;
}

int CGraphDataGroup::CalcHeight(int available) {
    m_nHeight = available;
    if (IsBinaryOnly()) {
        const int natural = m_bSeparateSets
                                ? (CountBinarySets(DisplayType::Graph) + kBinaryExtraLanes) * kBinaryLane
                                : kBinaryTogether;
        m_nHeight = std::min(natural, available);
    }
    return m_nHeight;
}

} // namespace Tracelyn
