#include "measure/Signals.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"

#include <algorithm>
#include <cstdint>

namespace Tracelyn {

namespace {

// The first sample from `from` on at which the test holds, which looks at the smallest and the largest raw
// value of a range. Doubles the range until it holds for one, and then halves that.
template <class Test>
std::optional<int> FindFirst(const CGraphDataSet& set, int from, Test test) {
    const int count = set.GetCount();
    int64_t begin = std::max(from, 0);
    int64_t length = 256;
    const auto holds = [&](int64_t to) {
        return test(set.GetMinMax(static_cast<int>(begin), static_cast<int>(std::min<int64_t>(to, count))));
    };
    while (begin < count && !holds(begin + length)) {
        begin += length;
        length *= 2;
    }
    if (begin >= count)
        return std::nullopt;
    while (length > 1) {
        length /= 2;
        if (!holds(begin + length))
            begin += length;
    }
    return static_cast<int>(begin);
}

} // namespace

std::vector<ShownSignal> ShownSignals(const CGraphData& data) {
    std::vector<ShownSignal> signals;
    for (const auto& group : data.GetGroups()) {
        for (const CGraphDataSet* const set : group->m_Sets) {
            if (group->m_nDisplayType != DisplayType::None && set->GetDisplayType() != DisplayType::None &&
                set->GetStore() != nullptr)
                signals.push_back({group.get(), set});
        }
    }
    return signals;
}

const CGraphDataSet* FindOnOffSignal(const CGraphData& data, const QString& name) {
    const std::vector<ShownSignal> signals = ShownSignals(data);
    const auto found = std::ranges::find_if(signals, [&](const ShownSignal& signal) {
        return signal.set->IsBinary() && signal.set->GetName() == name;
    });
    return found == signals.end() ? nullptr : found->set;
}

int SampleCount(const CGraphData& data) {
    int count = 0;
    for (const ShownSignal& signal : ShownSignals(data))
        count = std::max(count, signal.set->GetCount());
    return count;
}

double AxisStep(const CGraphData& data) {
    for (const auto& set : data.GetSets()) {
        if (dynamic_cast<const CGraphDataIndexSet*>(set.get()) != nullptr)
            return set->GetUnitFactor();
    }
    return 1;
}

std::optional<int> FindSwitchOn(const CGraphDataSet& set, int from) {
    return FindFirst(set, from, [](const MinMax& found) { return found.max != 0; });
}

std::optional<int> FindSwitchOff(const CGraphDataSet& set, int from) {
    return FindFirst(set, from, [](const MinMax& found) { return found.min == 0; });
}

} // namespace Tracelyn
