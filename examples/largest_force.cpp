// Prints the largest value of a signal, and when it is reached.
//     largest_force FILE [SIGNAL [CODE]]
#include "measure/Signals.h"
#include "measure/Statistics.h"

#include <tracelyn/Recording.h>

#include <QTextStream>

#include <algorithm>

namespace {

// The first signal of that name, whatever its group; null when there is none.
const Tracelyn::CGraphDataSet* FindSignal(const Tracelyn::CGraphData& data, const QString& name) {
    const auto shown = Tracelyn::ShownSignals(data);
    const auto hasName = [&](const Tracelyn::ShownSignal& signal) { return signal.set->GetName() == name; };
    const auto found = std::ranges::find_if(shown, hasName);
    return found == shown.end() ? nullptr : found->set;
}

} // namespace

int main(int argc, char* argv[]) {
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (argc < 2 || argc > 4) {
        err << "usage: largest_force FILE [SIGNAL [CODE]]\n";
        return 2;
    }
    const QString name = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("Force");
    const int level = argc > 3 ? Tracelyn::LevelGrantedBy(QString::fromLocal8Bit(argv[3])) : 0;

    Tracelyn::CRecording recording;
    if (!recording.Load(QString::fromLocal8Bit(argv[1]), level)) {
        err << recording.GetReason() << '\n';
        return 1;
    }
    for (const Tracelyn::ReadResult& problem : recording.GetProblems())
        err << argv[1] << ": " << problem.GetText().trimmed() << '\n';

    const Tracelyn::CGraphData& data = recording.GetData();
    const Tracelyn::CGraphDataSet* const signal = FindSignal(data, name);
    if (signal == nullptr || signal->GetCount() == 0) {
        err << argv[1] << ": there is no signal '" << name << "' with samples\n";
        return 1;
    }
    const double step = Tracelyn::AxisStep(data);
    const auto figures = Tracelyn::Measure(*signal, 0, signal->GetCount() - 1, step);
    out << name << ": " << figures.max << ' ' << signal->GetUnit() << " at sample " << figures.maxAt << ", "
        << figures.maxAt * step << " on the axis\n";
    return 0;
}
