// The CSV export against the plain loop that prints the same values.
#include "Recording.h"
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <cstdio>
#include <stdexcept>
#include <vector>

using namespace Tracelyn;

namespace {

QString FreshFile(const char* name) {
    const QString path = Options().folder + QLatin1Char('/') + QLatin1String(name);
    QFile::remove(path);
    return path;
}

void ExportFile(benchmark::State& state) {
    const CGraphData& data = LoadedGraph().GetData();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const QString path = FreshFile("export.csv");
        state.ResumeTiming();
        CCsvFile file;
        if (!file.Open(path))
            throw std::runtime_error("cannot write " + path.toStdString());
        ExportCsv(data, file);
        file.Close();
    }
}
BENCHMARK(ExportFile)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

struct Table {
    std::vector<int> decimals;
    std::vector<float> values; // row by row
};

Table SampledValues(const CGraphData& data) {
    Table table;
    std::vector<const CGraphDataSet*> sets;
    for (const auto& group : data.GetGroups()) {
        for (const CGraphDataSet* set : group->m_Sets) {
            if (dynamic_cast<const CGraphDataFixedSet*>(set) == nullptr) {
                sets.push_back(set);
                table.decimals.push_back(set->GetPrecision());
            }
        }
    }
    const int rows = data.GetMaxCount();
    table.values.reserve(static_cast<size_t>(rows) * sets.size());
    for (int row = 0; row < rows; ++row) {
        for (const CGraphDataSet* set : sets)
            table.values.push_back(static_cast<float>(set->GetScaledValue(row, kNoReference)));
    }
    return table;
}

void PrintTable(const Table& table, std::FILE* file) {
    const size_t columns = table.decimals.size();
    for (size_t at = 0; at < table.values.size(); ++at) {
        const size_t column = at % columns;
        if (column != 0)
            std::fputc(',', file);
        std::fprintf(file, "%1.*f", table.decimals[column], double{table.values[at]});
        if (column + 1 == columns)
            std::fputs("\r\n", file);
    }
}

void PrintfLoop(benchmark::State& state) {
    static const Table table = SampledValues(LoadedGraph().GetData());
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const QString path = FreshFile("printf.csv");
        state.ResumeTiming();
        std::FILE* const file = std::fopen(path.toLocal8Bit().constData(), "wb");
        if (file == nullptr)
            throw std::runtime_error("cannot write " + path.toStdString());
        PrintTable(table, file);
        if (std::fclose(file) != 0)
            throw std::runtime_error("cannot write " + path.toStdString());
    }
}
BENCHMARK(PrintfLoop)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
