#include "model/GraphDataSet.h"

#include "model/GraphData.h"
#include "model/GraphDataTypedSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace Tracelyn {

CGraphDataSet::CGraphDataSet(CGraphData& root) {
    Reset();
    root.AddSet(this);
}

// The cache begins with a pair of indices that nobody asks for, so that it never answers the first query.
CGraphDataSet::CGraphDataSet(CGraphData& root, const QString& name)
    : m_nCacheFrom(std::numeric_limits<int>::max()), m_nCacheTo(std::numeric_limits<int>::min()) {
    Reset();
    m_strName = name;
    root.AddSet(this);
}

void CGraphDataSet::SetProperties(const QString& name, const QString& unit, float unitOffset,
                                  float unitFactor, int precision) {
    m_strName = name;
    SetUnit(unit, unitOffset, unitFactor, precision);
}

void CGraphDataSet::SetUnit(const QString& unit, float unitOffset, float unitFactor, int precision) {
    m_strUnit = unit;
    m_fUnitOffset = unitOffset;
    m_fUnitFactor = unitFactor;
    m_nPrecision = precision;
}

void CGraphDataSet::Reset() {
    m_strUnit.clear();
    m_fUnitFactor = 1.0F;
    m_fUnitOffset = 0.0F;
    m_nPrecision = 6;
    m_nDisplayType = DisplayType::Both;
    m_bIgnoreForVerticalAutoScaling = false;
    // Components stay at or below 223: a colour that is still readable on a light background.
    const auto component = [] { return static_cast<ColorRef>(std::rand()) & 0xDFU; };
    const ColorRef red = component();
    const ColorRef green = component();
    const ColorRef blue = component();
    m_crColor = blue << 16U | green << 8U | red;
}

MinMax CGraphDataSet::GetMinMax(int from, int to) const {
    const std::lock_guard lock(m_CacheMutex);
    if (from != m_nCacheFrom || to != m_nCacheTo) {
        const MinMax found = Scan(from, to);
        m_nCacheFrom = from;
        m_nCacheTo = to;
        m_fCacheMin = found.min;
        m_fCacheMax = found.max;
    }
    return {m_fCacheMin, m_fCacheMax};
}

void CGraphDataSet::GetMinMax(int from, int to, float& min, float& max) const {
    const MinMax found = GetMinMax(from, to);
    min = found.min;
    max = found.max;
}

MinMax CGraphDataSet::Scan(int from, int to) const {
    const auto first = static_cast<float>(GetValue(from, kNoReference));
    MinMax found{first, first};
    for (int i = from; i < to; ++i)
        found.Widen(static_cast<float>(GetValue(i, kNoReference)));
    return found;
}

void CGraphDataSet::GetValues(int first, int step, std::span<double> values) const {
    int64_t index = first;
    for (double& value : values) {
        value = GetValue(static_cast<int>(index), kNoReference);
        index += step;
    }
}

void CGraphDataSet::Summarize(std::span<const int> bounds, std::span<SampleSummary> summaries) const {
    const auto value = [this](int index) { return static_cast<float>(GetValue(index, kNoReference)); };
    for (size_t k = 0; k + 1 < bounds.size(); ++k) {
        if (bounds[k] >= bounds[k + 1])
            continue;
        summaries[k] = {value(bounds[k]), value(bounds[k + 1] - 1), MinMax::None()};
        for (int i = bounds[k]; i < bounds[k + 1]; ++i) {
            if (std::isfinite(value(i)))
                summaries[k].finite.Widen(value(i));
        }
    }
}

void CGraphDataSet::GetScaledValues(int first, std::span<float> values) const {
    std::array<double, 256> raw;
    const double offset = GetUnitOffset();
    const double factor = GetUnitFactor();
    while (!values.empty()) {
        const std::span chunk = values.first(std::min(values.size(), raw.size()));
        GetValues(first, 1, std::span(raw).first(chunk.size()));
        std::ranges::transform(std::span(raw).first(chunk.size()), chunk.begin(),
                               [=](double value) { return static_cast<float>((value + offset) * factor); });
        first += static_cast<int>(chunk.size());
        values = values.subspan(chunk.size());
    }
}

} // namespace Tracelyn
