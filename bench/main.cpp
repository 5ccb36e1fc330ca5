// tracelyn_bench [--file=F] [--samples=N] [--folder=D] [--benchmark_...]: the inner loops and frames, timed.
#include "BenchOptions.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStringList>

#include <cstdio>

namespace {

BenchOptions g_Options;

// Takes "--name=value" and gives the value; empty when the argument is another one.
QString ValueOf(const QString& argument, const char* name) {
    const QString start = QStringLiteral("--%1=").arg(QLatin1String(name));
    return argument.startsWith(start) ? argument.mid(start.size()) : QString();
}

} // namespace

const BenchOptions& Options() {
    return g_Options;
}

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
#ifndef Q_OS_WIN // which has no fonts without a display
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    const QApplication application(argc, argv);
    for (const QString& argument : QApplication::arguments().mid(1)) {
        if (const QString file = ValueOf(argument, "file"); !file.isEmpty())
            g_Options.file = file;
        else if (const QString folder = ValueOf(argument, "folder"); !folder.isEmpty())
            g_Options.folder = folder;
        else if (const int samples = ValueOf(argument, "samples").toInt(); samples > 0)
            g_Options.samples = samples;
        else {
            std::fprintf(stderr, "tracelyn_bench: unknown argument %s\n", qUtf8Printable(argument));
            return 2;
        }
    }
    RegisterModelBenchmarks();
    RegisterOddBenchmarks();
    return benchmark::RunSpecifiedBenchmarks() > 0 ? 0 : 1;
}
