#include "native/Measuring.h"

#include "native/Conversion.h"
#include "native/LongCall.h"

#include "measure/ComparisonTable.h"
#include "measure/SampleChoice.h"
#include "measure/Signals.h"
#include "measure/StatisticsTable.h"

#include <stdexcept>

namespace py = pybind11;

namespace Tracelyn {

namespace {

std::optional<QString> FromPython(const std::optional<std::string>& text) {
    return text ? std::optional(Tracelyn::FromPython(*text)) : std::nullopt;
}

} // namespace

int ZeroOf(const CLoadedRecording& recording, const std::optional<QString>& alignSignal) {
    QString reason;
    const auto zero = FindZero(recording.GetData(), alignSignal, reason);
    if (!zero)
        throw std::invalid_argument(QStringLiteral("%1: %2").arg(recording.GetPath(), reason).toStdString());
    return *zero;
}

py::list StatisticsOfRecording(const CLoadedRecording& recording, std::optional<int> from,
                               std::optional<int> to, const std::optional<std::string>& whileSignal) {
    const auto lines = CallUnlocked([&](const support::Progress& progress) {
        const std::lock_guard lock(recording.GetMutex());
        const CGraphData& data = recording.GetData();
        QString reason;
        const auto samples = FindChosen(data, {from, to, FromPython(whileSignal)}, reason);
        if (!samples)
            throw std::invalid_argument(reason.toStdString());
        const double axisStep = AxisStep(data);
        const std::vector<ShownSignal> signals = ShownSignals(data);
        std::vector<TableLine> table;
        for (const ShownSignal& signal : signals) {
            const auto done = static_cast<double>(table.size()) / static_cast<double>(signals.size());
            if (!support::Report(progress, done))
                break;
            const Statistics figures = Measure(*signal.set, samples->from, samples->to, axisStep);
            table.push_back(StatisticsLine({}, signal, figures));
        }
        return table;
    });
    return ToPython(kStatisticsColumns, lines);
}

py::tuple CompareRecordings(const CLoadedRecording& good, const CLoadedRecording& other,
                            const std::optional<std::string>& align,
                            const std::map<std::string, double>& tolerances) {
    if (&good == &other)
        RaiseValueError(QStringLiteral("'%1' is the good recording itself").arg(good.GetPath()));
    std::vector<Tolerance> allowed;
    allowed.reserve(tolerances.size());
    for (const auto& [signal, largest] : tolerances)
        allowed.push_back({Tracelyn::FromPython(signal), largest});
    const auto report = CallUnlocked([&](const support::Progress& progress) {
        const std::scoped_lock lock(good.GetMutex(), other.GetMutex());
        const int zero = ZeroOf(good, FromPython(align));
        CComparisonTable table({good.GetData(), zero, good.GetPath()}, allowed);
        auto found =
            table.LookAt({other.GetData(), ZeroOf(other, FromPython(align)), other.GetPath()}, progress);
        if (!support::Report(progress, 1))
            return found;
        if (const auto useless = table.FindUselessTolerance())
            throw std::invalid_argument(
                QStringLiteral("tolerances: no signal '%1' is in %2 and in a file to compare")
                    .arg(*useless, good.GetPath())
                    .toStdString());
        return found;
    });
    py::list warnings;
    for (const QString& text : report.problems + report.remarks)
        warnings.append(ToPython(QStringLiteral("%1: %2").arg(other.GetPath(), text)));
    return py::make_tuple(ToPython(kComparisonColumns, report.lines), warnings);
}

} // namespace Tracelyn
