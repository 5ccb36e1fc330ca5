// What the benchmark program is told on its command line.
#pragma once

#include <QString>

struct BenchOptions {
    // The recording that benchmarks load.
    QString file;
    // Samples of each signal of the large models made in memory.
    int samples = 10'000'000;
    // Where exported files go.
    QString folder;
};

const BenchOptions& Options();

// One benchmark for each type of sample.
void RegisterModelBenchmarks();

// One for each odd picture.
void RegisterOddBenchmarks();
