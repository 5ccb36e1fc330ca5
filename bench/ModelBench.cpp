// The min/max index of a signal: building it, asking it, and what it keeps in memory.
#include "BenchOptions.h"
#include "model/GraphDataTypedSource.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

using namespace Tracelyn;

namespace {

template <class T>
std::unique_ptr<CGraphDataTypedSource<T>> RandomSource() {
    auto source = std::make_unique<CGraphDataTypedSource<T>>();
    std::mt19937 random(1);
    source->SetSize(Options().samples);
    for (int i = 0; i < Options().samples; ++i)
        source->Add(static_cast<T>(random() % 100));
    return source;
}

template <class T>
void BuildIndex(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const auto source = RandomSource<T>();
        state.ResumeTiming();
        source->BuildIndex();
        state.counters["index_bytes"] = static_cast<double>(source->GetIndexBytes());
        state.counters["store_bytes"] = static_cast<double>(Options().samples) * sizeof(T);
    }
}

template <class T>
void AskIndex(benchmark::State& state) {
    const auto source = RandomSource<T>();
    source->BuildIndex();
    int from = 0;
    for ([[maybe_unused]] auto _ : state) {
        from = (from + 77) % (Options().samples / 3);
        benchmark::DoNotOptimize(source->Scan(from, Options().samples - from));
    }
}

template <class T>
void Register(const char* type) {
    const auto name = [type](const char* what) { return std::string(what) + '/' + type; };
    benchmark::RegisterBenchmark(name("BuildIndex").c_str(), BuildIndex<T>)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(name("AskIndex").c_str(), AskIndex<T>);
}

} // namespace

void RegisterModelBenchmarks() {
    Register<int8_t>("Byte");
    Register<uint8_t>("UByte");
    Register<int16_t>("Short");
    Register<uint16_t>("UShort");
    Register<int32_t>("Long");
    Register<uint32_t>("ULong");
    Register<float>("Float");
}
