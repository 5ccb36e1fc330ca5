// Prints how far the beam rises between two events: the valve that holds the sheet switches off, and from
// there on the force comes down to a hundredth of what it was.
//     springback FILE [VALVE FORCE POSITION]
#include "measure/Signals.h"

#include <tracelyn/Recording.h>

#include <QTextStream>

#include <array>
#include <optional>

using namespace Tracelyn;

int main(int argc, char* argv[]) {
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (argc != 2 && argc != 5) {
        err << "usage: springback FILE [VALVE FORCE POSITION]\n";
        return 2;
    }
    std::array names{QStringLiteral("Press valve"), QStringLiteral("Force"), QStringLiteral("Y1")};
    for (int i = 2; i < argc; ++i)
        names[size_t(i) - 2] = QString::fromLocal8Bit(argv[i]);

    CRecording recording;
    if (!recording.Load(QString::fromLocal8Bit(argv[1]))) {
        err << recording.GetReason() << '\n';
        return 1;
    }
    const CGraphData& data = recording.GetData();
    const CGraphDataSet* const valve = FindOnOffSignal(data, names[0]);
    const CGraphDataSet* const force = data.FindSet(names[1]);
    const CGraphDataSet* const position = data.FindSet(names[2]);
    if (valve == nullptr || force == nullptr || position == nullptr) {
        err << argv[1] << ": it has not all of '" << names[0] << "', '" << names[1] << "' and '" << names[2]
            << "'\n";
        return 1;
    }

    const std::optional<int> on = FindSwitchOn(*valve, 0);
    const std::optional<int> held = on ? FindSwitchOff(*valve, *on) : std::nullopt;
    std::optional<int> free;
    for (int i = held.value_or(force->GetCount()); i < force->GetCount() && !free; ++i) {
        if (force->GetScaledValue(i, kNoReference) < force->GetScaledValue(*held, kNoReference) / 100)
            free = i;
    }
    if (!free) {
        err << argv[1] << ": '" << names[0] << "' does not switch off, or '" << names[1] << "' stays\n";
        return 1;
    }
    const double rise =
        position->GetScaledValue(*free, kNoReference) - position->GetScaledValue(*held, kNoReference);
    out << names[2] << ": " << rise << ' ' << position->GetUnit() << ", samples " << *held << " to " << *free
        << '\n';
    return 0;
}
