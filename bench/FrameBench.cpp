// A load, and frames: the first after it, those after zooming and scrolling, and what a cursor step repaints.
#include "Recording.h"
#include "StripWindow.h"

#include <benchmark/benchmark.h>

using namespace Tracelyn;

namespace {

constexpr QSize kSize(1280, 720);
constexpr int kShape = 10'000;

void Load(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        LoadAgain();
}
BENCHMARK(Load)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

// The given frame after a load of the recording, the first being number 0.
void FrameAfterLoad(benchmark::State& state, int number) {
    for ([[maybe_unused]] auto _ : state) {
        CGraph& graph = LoadAgain();
        COffscreenWindow window(kSize);
        for (int i = 0; i < number; ++i)
            window.Paint(graph);
        state.SetIterationTime(SecondsOfFrame(window, graph));
    }
}
BENCHMARK_CAPTURE(FrameAfterLoad, first, 0)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameAfterLoad, next, 1)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// A tour through the recording, one frame a stop: zoom in to the limit, scroll, zoom out.
void TakeTour(CGraph& graph, COffscreenWindow& window) {
    constexpr float kZoomStep = 1.25F;
    while (graph.CanZoomIn()) {
        graph.Zoom(window, graph.GetZoom() * kZoomStep);
        window.Paint(graph);
        if (graph.GetZoom() > 2) {
            graph.OnHScroll(window, ScrollCode::LineRight, 0);
            window.Paint(graph);
        }
    }
    while (graph.CanZoomOut()) {
        graph.Zoom(window, graph.GetZoom() / kZoomStep);
        window.Paint(graph);
    }
}

void ZoomAndScroll(benchmark::State& state, MadeRecording& recording, bool everyEvent = false) {
    COffscreenWindow window(kSize);
    recording.graph.ShowEveryEvent(window, everyEvent);
    window.Paint(recording.graph);
    for ([[maybe_unused]] auto _ : state)
        TakeTour(recording.graph, window);
}

MadeRecording& SmallRecording() {
    static MadeRecording recording(kShape, 1);
    return recording;
}

MadeRecording& LargeRecording() {
    static MadeRecording recording(kShape, Options().samples / kShape);
    return recording;
}

void ZoomAndScrollSmall(benchmark::State& state) {
    ZoomAndScroll(state, SmallRecording());
}
BENCHMARK(ZoomAndScrollSmall)->Unit(benchmark::kMillisecond);

void ZoomAndScrollLarge(benchmark::State& state) {
    ZoomAndScroll(state, LargeRecording());
}
BENCHMARK(ZoomAndScrollLarge)->Unit(benchmark::kMillisecond);

void EveryEventSmall(benchmark::State& state) {
    ZoomAndScroll(state, SmallRecording(), true);
}
BENCHMARK(EveryEventSmall)->Unit(benchmark::kMillisecond);

void EveryEventLarge(benchmark::State& state) {
    ZoomAndScroll(state, LargeRecording(), true);
}
BENCHMARK(EveryEventLarge)->Unit(benchmark::kMillisecond);

void FullFrame(benchmark::State& state) {
    CGraph& graph = LoadedGraph();
    COffscreenWindow window(kSize);
    for ([[maybe_unused]] auto _ : state)
        window.Paint(graph);
}
BENCHMARK(FullFrame)->Unit(benchmark::kMillisecond);

void CursorStep(benchmark::State& state) {
    CGraph& graph = LoadedGraph();
    StripWindow window(graph, kSize);
    window.PaintAll();
    const int middle = graph.GetCursorPosition();
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        step = step % (kShape / 2) + 10;
        graph.SetCursorPosition(window, middle + step);
    }
}
BENCHMARK(CursorStep)->Unit(benchmark::kMillisecond);

} // namespace
