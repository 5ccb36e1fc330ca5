// A cursor step in a long recording, with and without the dock that measures beside it.
#include "Recording.h"
#include "StripWindow.h"
#include "app/MeasureDock.h"
#include "measure/StatisticsIndex.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

using namespace Tracelyn;

namespace {

// Steps between a fixed cursor at the start and the end of the recording, and lets the event loop run.
void StepInLongRecording(benchmark::State& state, bool measures) {
    constexpr int kShape = 10'000;
    static MadeRecording recording(kShape, Options().samples / kShape);
    CGraph& graph = recording.graph;
    StripWindow window(graph, QSize(1280, 720));
    window.PaintAll();
    graph.SetFixedCursor(window, 0);
    CMeasureDock dock(nullptr);
    if (measures) {
        dock.resize(1280, 250);
        dock.show();
        dock.Measure(graph, {});
    }
    int step = 10;
    for ([[maybe_unused]] auto _ : state) {
        graph.SetCursorPosition(window, graph.GetCursorPosition() + step);
        dock.Follow();
        QCoreApplication::processEvents();
        step = -step;
    }
}

void CursorStepLong(benchmark::State& state) {
    StepInLongRecording(state, false);
}
BENCHMARK(CursorStepLong)->Unit(benchmark::kMillisecond);

void CursorStepMeasuring(benchmark::State& state) {
    StepInLongRecording(state, true);
}
BENCHMARK(CursorStepMeasuring)->Unit(benchmark::kMillisecond);

// What one refresh of the dock asks for.
void FiguresLong(benchmark::State& state) {
    constexpr int kShape = 10'000;
    static MadeRecording recording(kShape, Options().samples / kShape);
    CStatisticsIndex index(recording.graph.GetData());
    index.Prepare();
    int from = 1000;
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& set : recording.graph.GetData().GetSets())
            benchmark::DoNotOptimize(index.Measure(*set, from, Options().samples - from));
        from = from % 2000 + 7;
    }
}
BENCHMARK(FiguresLong)->Unit(benchmark::kMillisecond);

} // namespace
