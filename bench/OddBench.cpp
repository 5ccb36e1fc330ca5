// Frames of recordings that nobody would record: none may keep the user waiting.
#include "Recording.h"

#include <benchmark/benchmark.h>

#include <QSize>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>

using namespace Tracelyn;

namespace {

constexpr QSize kWindow(1280, 720);
constexpr QSize kLargest(8000, 8000);
constexpr int kSamples = 100'000;

double Wave(int index) {
    return std::sin(index * 0.01);
}

double Noise(int index) {
    return static_cast<double>(static_cast<uint32_t>(index) * 2654435761U % 1000U);
}

void AddBands(MemoryRecording& recording, int groups, const QString& name = {}) {
    for (int i = 0; i < groups; ++i) {
        const QString own = QString::number(i) + name;
        recording.AddSignal<float>(recording.AddGroup(own), own, 1000, Wave);
    }
}

template <class T>
void AddExtremes(MemoryRecording& recording, CGraphDataGroup& group) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::vector<T> values = Extremes<T>();
    recording
        .AddSignal<T>(group, QStringLiteral("extremes"), kSamples,
                      [&](int i) { return values[static_cast<size_t>(Noise(i)) % values.size()]; })
        .SetUnit(QStringLiteral("mm"), -1e31F, kInfinity, 3);
}

void AddAllExtremes(MemoryRecording& recording) {
    for (const bool separate : {false, true}) {
        CGraphDataGroup& group = recording.AddGroup(QStringLiteral("extremes"));
        group.m_bSeparateSets = separate;
        AddExtremes<float>(recording, group);
        AddExtremes<int8_t>(recording, group);
        AddExtremes<int16_t>(recording, group);
        AddExtremes<uint16_t>(recording, group);
        AddExtremes<int32_t>(recording, group);
        AddExtremes<uint32_t>(recording, group);
        AddExtremes<float>(recording, group);
    }
}

void AddLongNames(MemoryRecording& recording, const QString& unit, int groups) {
    AddBands(recording, groups, unit.repeated(100'000 / unit.size()));
}

void AddNoise(MemoryRecording& recording) {
    CGraphDataGroup& group = recording.AddGroup(QStringLiteral("noise"));
    for (int i = 0; i < 3; ++i)
        recording.AddSignal<float>(group, QStringLiteral("n"), kSamples, Noise);
    CGraphDataGroup& bits = recording.AddGroup(QStringLiteral("bits"));
    bits.m_bSeparateSets = true;
    for (int i = 0; i < 8; ++i)
        recording.AddBit(bits, QStringLiteral("b"), kSamples, [](int k) { return Noise(k) < 500; });
}

void AddRatios(MemoryRecording& recording) {
    AddBands(recording, 300);
    int i = 0;
    for (const auto& group : recording.graph.GetData().GetGroups())
        group->m_nSizeRatio = std::array{INT32_MAX, INT32_MIN, -1, 0, 7}[static_cast<size_t>(i++ % 5)];
}

void AddDecimals(MemoryRecording& recording) {
    CGraphDataGroup& group = recording.AddGroup(QStringLiteral("decimals"));
    for (int i = 0; i < 60; ++i)
        recording.AddSignal<float>(group, QStringLiteral("d"), 1000, Wave)
            .SetUnit(QStringLiteral("mm"), 0.1F, 1e38F, 5000);
}

struct OddPicture {
    const char* name;
    QSize size;
    std::function<void(MemoryRecording&)> fill;
};

const std::array kPictures{
    OddPicture{"extremes of every type, offset -1e31, factor infinite", kWindow, AddAllExtremes},
    OddPicture{"500 groups", {1280, 300}, [](auto& recording) { AddBands(recording, 500); }},
    OddPicture{"10,000 groups and signals", kWindow, [](auto& recording) { AddBands(recording, 10'000); }},
    OddPicture{"names of 100,000 letters", kWindow,
               [](auto& recording) { AddLongNames(recording, QStringLiteral("Wide name "), 10); }},
    OddPicture{
        "names of 100,000 letters from right to left", kWindow,
        [](auto& recording) { AddLongNames(recording, QStringLiteral("\u05E9\u05DC\u05D5\u05DD "), 10); }},
    OddPicture{
        "names of 100,000 combining characters", kWindow,
        [](auto& recording) { AddLongNames(recording, QStringLiteral("e\u0301\u0302\u0303\u0304"), 10); }},
    OddPicture{"500 groups, names of 100,000 letters", kWindow,
               [](auto& recording) { AddLongNames(recording, QStringLiteral("Wide name "), 500); }},
    OddPicture{
        "500 groups, names of mixed scripts", kWindow,
        [](auto& recording) { AddLongNames(recording, QStringLiteral("a\u0628b\u05E9\u4E00\u0915"), 500); }},
    OddPicture{
        "500 groups, names that change direction", kWindow,
        [](auto& recording) { AddLongNames(recording, QStringLiteral("\u202Ea\u202Db\u2067c\u2069"), 500); }},
    OddPicture{"size ratios huge, negative and zero", kWindow, AddRatios},
    OddPicture{"5000 decimals", kWindow, AddDecimals},
    OddPicture{"no samples", kWindow,
               [](auto& recording) {
                   recording.template AddSignal<float>(recording.AddGroup(QStringLiteral("none")),
                                                       QStringLiteral("none"), 0, Wave);
               }},
    OddPicture{"one pixel", {1, 1}, AddNoise},
    OddPicture{"large picture", kLargest, [](auto& recording) { AddBands(recording, 8); }},
    OddPicture{"noise on the largest screens", {3840, 2160}, AddNoise},
    OddPicture{"large picture of noise", kLargest, AddNoise},
};

// The first frame, and the slowest of those after zooming and stepping.
void FramesOf(benchmark::State& state, const OddPicture& picture) {
    for ([[maybe_unused]] auto _ : state) {
        MemoryRecording recording;
        picture.fill(recording);
        recording.graph.SetResetPending();
        COffscreenWindow window(picture.size);
        const double first = SecondsOfFrame(window, recording.graph);
        double later = 0;
        for (const float zoom : {1.0F, 7.0F, 40.0F}) {
            recording.graph.Zoom(window, zoom);
            later = std::max(later, SecondsOfFrame(window, recording.graph));
            recording.graph.SetCursorPosition(window, recording.graph.GetCursorPosition() + 1);
            later = std::max(later, SecondsOfFrame(window, recording.graph));
        }
        state.counters["first"] = first;
        state.counters["later"] = later;
        state.SetIterationTime(first + later);
    }
}

} // namespace

void RegisterOddBenchmarks() {
    for (const OddPicture& picture : kPictures) {
        const std::string name = QStringLiteral("OddPicture/%1 (%2x%3)")
                                     .arg(QLatin1String(picture.name))
                                     .arg(picture.size.width())
                                     .arg(picture.size.height())
                                     .toStdString();
        benchmark::RegisterBenchmark(name.c_str(), FramesOf, picture)
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}
