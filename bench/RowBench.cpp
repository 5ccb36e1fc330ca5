// Converting the text of sample rows: the cost of a field, beside looking at its characters once.
#include "reader/rows/SampleRows.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace Tracelyn;

namespace {

constexpr int kColumns = 16;
constexpr size_t kRows = 3'000; // with their samples they stay in a core's own memory

// Makes the text of a field, in the column of that number.
using MakeField = std::string (*)(int column, std::mt19937& random);

std::string Number(const char* format, double value) {
    std::string text(32, '\0');
    text.resize(static_cast<size_t>(std::snprintf(text.data(), text.size(), format, value)));
    return text;
}

double Spread(std::mt19937& random, double digits) {
    return std::pow(10, std::uniform_real_distribution(0.0, digits)(random));
}

// Floats with three decimals and either sign, integers of one to five digits.
std::string NoiseField(int column, std::mt19937& random) {
    if (column % 2 == 0)
        return Number("%.3f", Spread(random, 4) * (random() % 2 == 0 ? 1 : -1));
    return Number("%.0f", Spread(random, 5));
}

// As a controller prints that calms down: six decimals, integers of similar lengths.
std::string CalmField(int column, std::mt19937& random) {
    return column % 2 == 0 ? Number("%f", 100 + static_cast<double>(random() % 1000) / 999)
                           : Number("%.0f", 100.0 + static_cast<double>(random() % 900));
}

// Numbers of more digits than fit in eight characters, more or less often.
std::string MixedField(int column, std::mt19937& random) {
    return Number(column % 2 == 0 ? "%.5f" : "%.0f", Spread(random, 6));
}

struct Table {
    explicit Table(MakeField make) {
        std::mt19937 random(1);
        for (size_t row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column)
                text += make(column, random) + (column + 1 < kColumns ? "," : "\n");
        }
        size = text.size();
        text.resize(size + CRowConverter::kReadableBehind);
        for (int column = 0; column < kColumns; ++column) {
            if (column % 2 == 0)
                columns.emplace_back(std::span(floats.emplace_back(kRows)));
            else
                columns.emplace_back(std::span(integers.emplace_back(kRows)));
        }
    }

    std::string text;
    size_t size = 0;
    std::vector<std::vector<float>> floats;
    std::vector<std::vector<int32_t>> integers;
    std::vector<SampleColumn> columns;
};

template <MakeField make>
void ConvertRows(benchmark::State& state) {
    Table table(make);
    CRowConverter converter(table.columns);
    for ([[maybe_unused]] auto _ : state) {
        if (!converter.Convert({table.text.data(), table.size}, 0, kRows))
            state.SkipWithError("not all rows were converted");
        benchmark::ClobberMemory();
    }
    state.counters["fields"] =
        benchmark::Counter(static_cast<double>(kRows) * kColumns,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <MakeField make>
void LookAtRows(benchmark::State& state) {
    const Table table(make);
    for ([[maybe_unused]] auto _ : state) {
        const void* found = std::memchr(table.text.data(), 'x', table.size);
        benchmark::DoNotOptimize(found);
    }
}

BENCHMARK_TEMPLATE(ConvertRows, NoiseField)->Name("ConvertRows/noise");
BENCHMARK_TEMPLATE(LookAtRows, NoiseField)->Name("LookAtRows/noise");
BENCHMARK_TEMPLATE(ConvertRows, CalmField)->Name("ConvertRows/calm");
BENCHMARK_TEMPLATE(LookAtRows, CalmField)->Name("LookAtRows/calm");
BENCHMARK_TEMPLATE(ConvertRows, MixedField)->Name("ConvertRows/mixed");
BENCHMARK_TEMPLATE(LookAtRows, MixedField)->Name("LookAtRows/mixed");

} // namespace
