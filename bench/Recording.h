// Recordings to measure with: loaded through the reader, or made in memory.
#pragma once

#include "BenchOptions.h"
#include "MemoryRecording.h"
#include "reader/AnalysisFile.h"
#include "render/GraphWindow.h"

#include <chrono>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

namespace Tracelyn {

// The one graph that holds the recording of the options: a reader deletes the samples of the one before.
inline CGraph& SharedGraph() {
    static CGraph graph;
    return graph;
}

// Loads the recording again, as the window does. Throws when the file has problems.
inline CGraph& LoadAgain() {
    CGraph& graph = SharedGraph();
    graph.Clear();
    const Analysis analysis = LoadAnalysis(Options().file, 0, graph.GetData());
    if (analysis.status != LoadStatus::Read)
        throw std::runtime_error("cannot load " + Options().file.toStdString());
    if (!analysis.results.empty())
        throw std::runtime_error(analysis.results.front().GetText().toStdString());
    graph.SetResetPending();
    return graph;
}

inline CGraph& LoadedGraph() {
    return SharedGraph().GetData().HasData() ? SharedGraph() : LoadAgain();
}

// Sixteen signals of all types, on/off signals too. Their shape has `shape` samples, each of them repeated
// `repeat` times, so that recordings of any length look alike.
class MadeRecording : public MemoryRecording {
public:
    MadeRecording(int shape, int repeat) : m_nShape(shape), m_nRepeat(repeat) {
        for (const char* name : {"A", "B"})
            AddWaves<float, int16_t, int32_t>(AddGroup(QLatin1String(name)));
        CGraphDataGroup& separate = AddGroup(QStringLiteral("C"));
        separate.m_bSeparateSets = true;
        AddWaves<uint16_t, uint32_t, uint8_t, int8_t, float, int16_t>(separate);
        CGraphDataGroup& bits = AddGroup(QStringLiteral("D"));
        bits.m_bSeparateSets = true;
        for (int i = 0; i < 4; ++i)
            AddWave<uint8_t, CGraphDataBinarySet>(bits, [](double wave) { return wave > 0; });
        graph.SetResetPending();
    }

private:
    template <class... T>
    void AddWaves(CGraphDataGroup& group) {
        (AddWave<T, CGraphDataTypedSet<T>>(group, [](double wave) { return 60 + wave; }), ...);
    }

    template <class T, class Set, class Shape>
    void AddWave(CGraphDataGroup& group, Shape shape) {
        const double phase = ++m_nSignals;
        std::vector<T> wave;
        for (int i = 0; i < m_nShape; ++i)
            wave.push_back(
                static_cast<T>(shape(std::sin(i * 0.002 * phase) * 40 + std::sin(i * 0.9 + phase) * 10)));
        AddSignal<T, Set>(group, QStringLiteral("Signal %1").arg(m_nSignals), m_nShape * m_nRepeat,
                          [&](int i) { return wave[static_cast<size_t>(i / m_nRepeat)]; });
    }

    int m_nShape;
    int m_nRepeat;
    int m_nSignals = 0;
};

// Paints a frame and returns how long it took.
inline double SecondsOfFrame(COffscreenWindow& window, CGraph& graph) {
    const auto start = std::chrono::steady_clock::now();
    window.Paint(graph);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace Tracelyn
