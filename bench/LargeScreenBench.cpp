// Frames that fill a screen of 3840x2160 pixels, of signals that are noise.
#include "Recording.h"
#include "StripWindow.h"

#include <benchmark/benchmark.h>

#include <QImage>

#include <algorithm>
#include <random>

using namespace Tracelyn;

namespace {

constexpr QSize kScreen(3840, 2160);

class NoiseRecording : public MemoryRecording {
public:
    explicit NoiseRecording(int samples) {
        std::mt19937 random(1);
        for (int i = 0; i < 16; ++i) {
            if (i % 4 == 0)
                AddGroup(QStringLiteral("Group %1").arg(i / 4));
            CGraphDataGroup& group = *graph.GetData().GetGroups().back();
            const auto noise = [&](int) { return static_cast<int>(random() % 20'001) - 10'000; };
            const QString name = QStringLiteral("Signal %1").arg(i);
            if (i % 2 == 0)
                AddSignal<float>(group, name, samples, noise);
            else
                AddSignal<int16_t>(group, name, samples, noise);
        }
        graph.SetResetPending();
    }
};

NoiseRecording& Noise() {
    static NoiseRecording recording(Options().samples);
    return recording;
}

void FillScreen(benchmark::State& state) {
    QImage image(kScreen, QImage::Format_RGB32);
    QRgb color = 0;
    for ([[maybe_unused]] auto _ : state)
        image.fill(++color);
}
BENCHMARK(FillScreen)->Unit(benchmark::kMillisecond);

// The whole recording.
void NoiseFrame(benchmark::State& state) {
    CGraph& graph = Noise().graph;
    COffscreenWindow window(kScreen);
    window.Paint(graph);
    graph.Zoom(window, 1);
    for ([[maybe_unused]] auto _ : state)
        window.Paint(graph);
}
BENCHMARK(NoiseFrame)->Unit(benchmark::kMillisecond);

// The slowest frame at any zoom; of each zoom the fastest of some counts.
void NoiseFrameZoomed(benchmark::State& state) {
    CGraph& graph = Noise().graph;
    COffscreenWindow window(kScreen);
    window.Paint(graph);
    for ([[maybe_unused]] auto _ : state) {
        double slowest = 0;
        for (graph.Zoom(window, 1); graph.CanZoomIn(); graph.Zoom(window, graph.GetZoom() * 2)) {
            double fastest = SecondsOfFrame(window, graph);
            for (int i = 0; i < 4; ++i)
                fastest = std::min(fastest, SecondsOfFrame(window, graph));
            slowest = std::max(slowest, fastest);
        }
        state.SetIterationTime(slowest);
    }
}
BENCHMARK(NoiseFrameZoomed)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// What one step of a held arrow key takes.
void NoiseCursorStep(benchmark::State& state) {
    CGraph& graph = Noise().graph;
    StripWindow window(graph, kScreen);
    graph.Zoom(window, 1);
    window.PaintAll();
    int step = 10'000;
    for ([[maybe_unused]] auto _ : state) {
        graph.SetCursorPosition(window, graph.GetCursorPosition() + step);
        step = -step;
    }
}
BENCHMARK(NoiseCursorStep)->Unit(benchmark::kMillisecond);

} // namespace
