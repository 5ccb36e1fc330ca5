#include "render/GraphLayout.h"

#include "model/GraphData.h"
#include "support/Limits.h"

#include <QString>

#include <algorithm>
#include <cstdint>

namespace Tracelyn {

namespace {

using Metrics = LayoutMetrics;

// No band gets taller, whatever its size ratio; it is taller than any window.
constexpr int64_t kMaximumBand = 1 << 20;
// No band begins further down, however many there are; it is below any window.
constexpr int kLowestTop = 1 << 28;

int MinimumBandHeight(const CGraphDataGroup& group) {
    if (!group.m_bSeparateSets)
        return Metrics::kMinimumPlotHeight + Metrics::kSeparatorLines;
    const auto sets = static_cast<int>(group.m_Sets.size());
    return (Metrics::kBinaryRowHeight + 1) * sets + Metrics::kSeparatorLines - 1;
}

void SetMargins(CGraphDataGroup& group) {
    const int plot =
        group.m_nHeight - Metrics::kSeparatorLines - Metrics::kPlotBottomMargin - Metrics::kHeaderHeight;
    const bool hasHeader = plot >= Metrics::kMinimumPlotHeight;
    group.m_nTopMargin = hasHeader ? Metrics::kHeaderHeight : 0;
    group.m_nBottomMargin = hasHeader ? Metrics::kPlotBottomMargin : 0;
    group.m_nSetGap = Metrics::kPlotInnerMargin;
}

void Collapse(CGraphDataGroup& group) {
    group.m_nHeight = Metrics::kSeparatorLines + Metrics::kHeaderHeight;
    group.m_nTopMargin = Metrics::kHeaderHeight;
    group.m_nBottomMargin = 0;
}

// The last proportional band gets the remainders of all divisions before it.
int ProportionalHeight(const CGraphDataGroup& group, int64_t available, int64_t totalRatio) {
    const int minimum = MinimumBandHeight(group);
    if (totalRatio == 0)
        return minimum;
    // Thousands of bands of the greatest height before this one may have made the room so negative that its
    // product with the ratio overflows.
    const int64_t room = std::max<int64_t>(available - Metrics::kSeparatorLines, -kLowestTop);
    const int64_t share = group.m_nSizeRatio * room / totalRatio + Metrics::kSeparatorLines;
    return static_cast<int>(std::clamp<int64_t>(share, minimum, std::max<int64_t>(minimum, kMaximumBand)));
}

} // namespace

void LayoutBands(CGraphData& data, const PixelRect& client) {
    int64_t available = client.GetHeight() + Metrics::kSeparatorLines;
    int64_t totalRatio = 0;
    for (const auto& group : data.GetGroups()) {
        if (!group->IsDisplayedAsGraph())
            continue;
        if (!group->m_bExpanded) {
            Collapse(*group);
            available -= group->m_nHeight;
        } else {
            totalRatio += group->GetEffectiveSizeRatio();
        }
    }
    const auto forEachExpanded = [&](bool binaryOnly, auto setHeight) {
        for (const auto& group : data.GetGroups()) {
            if (!group->IsDisplayedAsGraph() || !group->m_bExpanded || group->IsBinaryOnly() != binaryOnly)
                continue;
            setHeight(*group);
            available -= group->m_nHeight;
            SetMargins(*group);
        }
    };
    forEachExpanded(true, [&](CGraphDataGroup& group) {
        group.CalcHeight(static_cast<int>(available));
        group.m_nHeight = std::max(group.m_nHeight, MinimumBandHeight(group));
    });
    forEachExpanded(false, [&](CGraphDataGroup& group) {
        group.CalcHeight(ProportionalHeight(group, available, totalRatio));
        totalRatio -= group.m_nSizeRatio;
    });

    int y = client.top;
    for (const auto& group : data.GetGroups()) {
        if (!group->IsDisplayedAsGraph())
            continue;
        group->m_nTop = y;
        y = std::min(y + group->m_nHeight, kLowestTop);
    }
}

ConsoleMetrics MeasureConsole(CGraphData& data, const std::function<int(const QString&)>& textWidth) {
    ConsoleMetrics console;
    int64_t charactersLeft = support::limits::kMaxMeasuredLength;
    const auto widen = [&](int& widest, const QString& text) {
        if (charactersLeft <= 0)
            return;
        charactersLeft -= std::min<int64_t>(text.size(), support::limits::kMaxShownLength);
        widest = std::max(widest, textWidth(text));
    };
    bool any = false;
    for (const auto& group : data.GetGroups()) {
        if (!group->IsDisplayedInConsole())
            continue;
        for (const CGraphDataSet* set : group->m_Sets) {
            if (!set->IsDisplayedInConsole() || set->IsBinary())
                continue;
            widen(console.widestName, set->GetName());
            widen(console.widestUnit, set->GetUnit());
        }
        const int binaries = group->CountBinarySets(DisplayType::Console);
        group->m_nConsoleLines = (binaries + Metrics::kBinariesPerRow - 1) / Metrics::kBinariesPerRow + 1 +
                                 group->CountNonBinarySets(DisplayType::Console);
        console.height += Metrics::kConsoleLineHeight * group->m_nConsoleLines + Metrics::kConsoleGroupGap;
        any = true;
    }
    if (any)
        console.height -= Metrics::kConsoleGroupGap;
    console.numberWidth = textWidth(QStringLiteral("000000.0000"));
    console.width =
        console.widestUnit + 2 * Metrics::kConsoleIndent + 2 + console.numberWidth + console.widestName;
    return console;
}

} // namespace Tracelyn
