// load_gaps FILE: loads an analysis as the window does and prints, in milliseconds, how long the whole load
// takes, the longest time in which the window could not paint, and the longest time that a load went on after
// it was asked to stop, tried at five moments; then how many bytes the document has.
#include "model/GraphData.h"
#include "reader/AnalysisFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

using namespace Tracelyn;

namespace {

constexpr int kStops = 5;
constexpr int kHighestLevel = 3;

struct Gaps {
    double whole = 0;
    double longest = 0;   // between two reports
    double afterStop = 0; // from the answer that asks to stop to the end of the load
};

// Loads the file and asks to stop after so many milliseconds.
Gaps Load(const QString& path, double stopAfter) {
    Gaps gaps;
    QElapsedTimer timer;
    timer.start();
    const auto now = [&timer] { return static_cast<double>(timer.nsecsElapsed()) / 1e6; };
    double last = 0;
    double stopped = -1;
    CGraphData data;
    LoadAnalysis(path, kHighestLevel, data, [&](double) {
        gaps.longest = std::max(gaps.longest, now() - last);
        last = now();
        if (stopped < 0 && last > stopAfter)
            stopped = last;
        return stopped < 0;
    });
    gaps.whole = now();
    gaps.longest = std::max(gaps.longest, gaps.whole - last);
    gaps.afterStop = stopped < 0 ? 0 : gaps.whole - stopped;
    return gaps;
}

qint64 DocumentSize(const QString& path) {
    return path.endsWith(QLatin1String(".xml")) ? QFileInfo(path).size()
                                                : QFileInfo(CExpandedAnalysis(path).GetPath()).size();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const Gaps whole = Load(path, 1e300);
    double afterStop = 0;
    for (int stop = 0; stop < kStops; ++stop)
        afterStop = std::max(afterStop, Load(path, whole.whole * stop / kStops).afterStop);
    std::printf("%.1f %.1f %.1f %lld\n", whole.whole, whole.longest, afterStop,
                static_cast<long long>(DocumentSize(path)));
    return 0;
}
