#include "cli/Commands.h"
#include "cli/SeveralFiles.h"
#include "measure/Signals.h"
#include "measure/StatisticsTable.h"
#include "model/GraphData.h"
#include "support/Interrupt.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Tracelyn {

namespace {

// The samples to measure, both included. Nothing, with a problem, when the recording does not have them.
std::optional<std::pair<int, int>> RangeOf(const CGraphData& data, const Options& options,
                                           const QString& file, FileReport& report) {
    const int last = SampleCount(data) - 1;
    const int from = options.from.value_or(0);
    const int to = options.to.value_or(last);
    if (last < 0) {
        report.AddProblem(file, QStringLiteral("there are no samples"));
        return std::nullopt;
    }
    if (from > last || to > last) {
        report.AddProblem(
            file,
            QStringLiteral("there is no sample %1, the last one is %2").arg(std::max(from, to)).arg(last));
        return std::nullopt;
    }
    if (!options.whileSignal)
        return std::pair(from, to);
    const CGraphDataSet* const signal = FindOnOffSignal(data, *options.whileSignal);
    if (signal == nullptr) {
        report.AddProblem(file, QStringLiteral("there is no on/off signal '%1'").arg(*options.whileSignal));
        return std::nullopt;
    }
    const std::optional<int> on = FindSwitchOn(*signal, from);
    if (!on || *on > to) {
        report.AddProblem(file, QStringLiteral("'%1' is never on between the samples %2 and %3")
                                    .arg(*options.whileSignal, QString::number(from), QString::number(to)));
        return std::nullopt;
    }
    const std::optional<int> off = FindSwitchOff(*signal, *on);
    return std::pair(*on, off && *off <= to ? *off - 1 : to);
}

} // namespace

ExitCode RunStats(const Options& options) {
    const auto measure = [&options](const CGraphData& data, const QString& file, FileReport& report) {
        const auto range = RangeOf(data, options, file, report);
        if (!range)
            return;
        const double axisStep = AxisStep(data);
        for (const ShownSignal& signal : ShownSignals(data)) {
            if (support::IsInterrupted())
                return;
            const Statistics figures = Measure(*signal.set, range->first, range->second, axisStep);
            report.lines.push_back(StatisticsLine(file, signal, figures));
        }
    };
    std::vector<FileReport> reports;
    {
        const QStringList files = FilesNamedBy(options.inputs);
        CJointProgress progress(files.size());
        reports = LookAtFiles(files, options.accessLevel, measure, progress);
    }
    if (support::IsInterrupted() || !PrintReports(reports, kStatisticsColumns, options.format))
        return ExitCode::Failed;
    if (std::ranges::none_of(reports, &FileReport::isRead))
        return ExitCode::Failed;
    return HasProblems(reports) ? ExitCode::ReadWithProblems : ExitCode::Success;
}

} // namespace Tracelyn
