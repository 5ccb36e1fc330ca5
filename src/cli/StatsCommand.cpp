#include "cli/Commands.h"
#include "cli/SeveralFiles.h"
#include "measure/SampleChoice.h"
#include "measure/Signals.h"
#include "measure/StatisticsTable.h"
#include "model/GraphData.h"
#include "support/Interrupt.h"

#include <algorithm>

namespace Tracelyn {

ExitCode RunStats(const Options& options) {
    const auto measure = [&options](const CGraphData& data, const QString& file, FileReport& report) {
        QString reason;
        const auto samples = FindChosen(data, options.samples, reason);
        if (!samples) {
            report.AddProblem(file, reason);
            return;
        }
        const double axisStep = AxisStep(data);
        for (const ShownSignal& signal : ShownSignals(data)) {
            if (support::IsInterrupted())
                return;
            const Statistics figures = Measure(*signal.set, samples->from, samples->to, axisStep);
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
