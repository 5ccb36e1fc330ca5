#include "model/GraphDataVariants.h"

#include <algorithm>
#include <cstdint>

namespace Tracelyn {

namespace {

constexpr ColorRef kFixedColor = 0x602020;
constexpr ColorRef kIndexColor = 0xFF0000;

// Index differences wrap like 32-bit integers.
int Difference(int index, int refIndex) {
    return static_cast<int>(static_cast<unsigned>(index) - static_cast<unsigned>(refIndex));
}

} // namespace

CGraphDataFixedSet::CGraphDataFixedSet(CGraphData& root, const QString& name, const float* pValue)
    : CGraphDataSet(root, name), m_pValue(pValue) {
    SetColor(kFixedColor);
}

double CGraphDataFixedSet::GetValue(int /*index*/, int /*refIndex*/) const {
    return *m_pValue;
}

double CGraphDataFixedSet::GetScaledValue(int /*index*/, int /*refIndex*/) const {
    return static_cast<float>((double{*m_pValue} + GetUnitOffset()) * GetUnitFactor());
}

void CGraphDataFixedSet::GetValues(int /*first*/, int /*step*/, std::span<double> values) const {
    std::ranges::fill(values, double{*m_pValue});
}

MinMax CGraphDataFixedSet::Scan(int /*from*/, int /*to*/) const {
    return {*m_pValue, *m_pValue};
}

CGraphDataOwningFixedSet::CGraphDataOwningFixedSet(CGraphData& root, const QString& name)
    : CGraphDataFixedSet(root, name, &m_fValue) {}

CGraphDataIndexSet::CGraphDataIndexSet(CGraphData& root, const QString& name) : CGraphDataSet(root, name) {
    SetColor(kIndexColor);
}

double CGraphDataIndexSet::GetValue(int index, int refIndex) const {
    return refIndex == kNoReference ? index : Difference(index, refIndex);
}

double CGraphDataIndexSet::GetScaledValue(int index, int refIndex) const {
    if (refIndex == kNoReference)
        return static_cast<float>((double{GetUnitOffset()} + index) * GetUnitFactor());
    return static_cast<float>(double(Difference(index, refIndex)) * GetUnitFactor());
}

void CGraphDataIndexSet::GetValues(int first, int step, std::span<double> values) const {
    int64_t index = first;
    for (double& value : values) {
        value = static_cast<int>(index);
        index += step;
    }
}

// The values rise with the index.
MinMax CGraphDataIndexSet::Scan(int from, int to) const {
    const auto last = static_cast<float>(from < to ? to - 1 : from);
    return {static_cast<float>(from), last};
}

} // namespace Tracelyn
