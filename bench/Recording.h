// Recordings to measure with: loaded through the reader, or made in memory.
#pragma once

#include "BenchOptions.h"
#include "Graph.h"
#include "GraphDataVariants.h"
#include "XmlReader.h"

#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

// The one graph that holds the recording of the options: a reader deletes the samples of the one before.
inline CGraph& SharedGraph() {
    static CGraph graph;
    return graph;
}

// Loads the recording again, as the window does. Throws when the file has problems.
inline CGraph& LoadAgain() {
    CGraph& graph = SharedGraph();
    graph.Clear();
    Tracelyn::CXmlReader reader;
    reader.ReadAnalysis(graph.GetData(), Options().file);
    if (!reader.GetResults().empty())
        throw std::runtime_error(reader.GetResults().front().GetText().toStdString());
    graph.SetResetPending();
    return graph;
}

inline CGraph& LoadedGraph() {
    return SharedGraph().GetData().HasData() ? SharedGraph() : LoadAgain();
}

// Sixteen signals of all types, on/off signals too. Their shape has `shape` samples, each of them repeated
// `repeat` times, so that recordings of any length look alike.
class MadeRecording {
public:
    MadeRecording(int shape, int repeat) : m_nShape(shape), m_nRepeat(repeat) {
        for (const char* name : {"A", "B"}) {
            CGraphDataGroup& group = AddGroup(name);
            AddSignals<float, int16_t, int32_t>(group);
        }
        CGraphDataGroup& separate = AddGroup("C");
        separate.m_bSeparateSets = true;
        AddSignals<uint16_t, uint32_t, uint8_t, int8_t, float, int16_t>(separate);
        CGraphDataGroup& bits = AddGroup("D");
        bits.m_bSeparateSets = true;
        for (int i = 0; i < 4; ++i)
            AddSignal<uint8_t, CGraphDataBinarySet>(bits);
        graph.SetResetPending();
    }

    CGraph graph;

private:
    CGraphDataGroup& AddGroup(const char* name) {
        graph.GetData().AddGroup(std::make_unique<CGraphDataGroup>(QString::fromLatin1(name)));
        return *graph.GetData().GetGroups().back();
    }

    template <class... T>
    void AddSignals(CGraphDataGroup& group) {
        (AddSignal<T, CGraphDataTypedSet<T>>(group), ...);
    }

    template <class T, class Set>
    void AddSignal(CGraphDataGroup& group) {
        const bool isBinary = std::is_same_v<Set, CGraphDataBinarySet>;
        const double phase = ++m_nSignals;
        auto source = std::make_shared<CGraphDataTypedSource<T>>();
        source->SetSize(m_nShape * m_nRepeat);
        for (int i = 0; i < m_nShape; ++i) {
            const double wave = std::sin(i * 0.002 * phase) * 40 + std::sin(i * 0.9 + phase) * 10;
            const T value = static_cast<T>(isBinary ? wave > 0 : 60 + wave);
            for (int k = 0; k < m_nRepeat; ++k)
                source->Add(value);
        }
        auto& set = graph.GetData().Make<Set>(QStringLiteral("Signal %1").arg(m_nSignals), source.get());
        group.AddSet(&set);
        m_Stores.push_back(std::move(source));
    }

    int m_nShape;
    int m_nRepeat;
    int m_nSignals = 0;
    std::vector<std::shared_ptr<void>> m_Stores;
};
