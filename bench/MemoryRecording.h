// A recording made in memory, which benchmarks, fuzzers and tests show: the graph and the stores of its
// signals.
#pragma once

#include "model/GraphDataVariants.h"
#include "render/Graph.h"

#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

namespace Tracelyn {

// Samples of a type that nobody would record.
template <class T>
std::vector<T> Extremes() {
    using Limits = std::numeric_limits<T>;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    if constexpr (std::is_floating_point_v<T>)
        return {std::numeric_limits<T>::quiet_NaN(),
                0.0F,
                -0.0F,
                1.0F,
                kInfinity,
                -kInfinity,
                Limits::max(),
                Limits::lowest(),
                Limits::denorm_min(),
                -1e30F};
    else
        return {Limits::lowest(), Limits::max(), T{0}, T{1}};
}

class MemoryRecording {
public:
    CGraphDataGroup& AddGroup(const QString& name, DisplayType type = DisplayType::Both) {
        graph.GetData().AddGroup(std::make_unique<CGraphDataGroup>(name));
        graph.GetData().GetGroups().back()->m_nDisplayType = type;
        return *graph.GetData().GetGroups().back();
    }

    // A signal of that many samples, each given by value(index).
    template <class T = float, class Set = CGraphDataTypedSet<T>, class Value>
    CGraphDataSet& AddSignal(CGraphDataGroup& group, const QString& name, int count, Value value) {
        auto source = std::make_shared<CGraphDataTypedSource<T>>();
        int index = 0;
        for (T& sample : source->Append(count))
            sample = static_cast<T>(value(index++));
        auto& set = graph.GetData().Make<Set>(name, source.get());
        group.AddSet(&set);
        m_Stores.push_back(std::move(source));
        return set;
    }

    // An on/off signal.
    template <class Value>
    CGraphDataSet& AddBit(CGraphDataGroup& group, const QString& name, int count, Value value) {
        return AddSignal<uint8_t, CGraphDataBinarySet>(group, name, count, value);
    }

    CGraph graph;

private:
    std::vector<std::shared_ptr<void>> m_Stores;
};

} // namespace Tracelyn
