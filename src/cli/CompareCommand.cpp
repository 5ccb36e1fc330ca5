#include "cli/Commands.h"
#include "cli/SeveralFiles.h"
#include "measure/ComparisonTable.h"
#include "model/GraphData.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"

#include <algorithm>
#include <iterator>

namespace Tracelyn {

ExitCode RunCompare(const Options& options) {
    const QStringList files = FilesNamedBy(options.inputs.mid(1));
    for (const QString& file : files) {
        if (support::IsSameFile(options.input, file))
            return WrongUsage(QStringLiteral("'%1' is the good recording itself").arg(file));
    }
    std::vector<FileReport> reports(1);
    std::optional<CJointProgress> progress(std::in_place, 1 + files.size());
    CRecording good;
    ReadRecording(good, good.GetData(), options.input, options.accessLevel, progress->Of(0), reports.front());
    const std::optional<int> zero = reports.front().isRead
                                        ? ZeroOf(good.GetData(), options, options.input, reports.front())
                                        : std::nullopt;
    CComparisonTable table({good.GetData(), zero.value_or(0), options.input}, options.tolerances);
    if (zero) {
        const auto mayGoOn = [](double /*done*/) { return !support::IsInterrupted(); };
        const auto look = [&](const CGraphData& data, const QString& file, FileReport& report) {
            if (const auto zeroOfFile = ZeroOf(data, options, file, report))
                report.Add(file, table.LookAt({data, *zeroOfFile, file}, mayGoOn));
        };
        auto others = LookAtFiles(files, options.accessLevel, look, *progress, 1);
        std::ranges::move(others, std::back_inserter(reports));
    }
    progress.reset();
    if (support::IsInterrupted())
        return ExitCode::Failed;
    if (const auto useless = table.FindUselessTolerance())
        return WrongUsage(QStringLiteral("--tolerance: no signal '%1' is in %2 and in a file to compare")
                              .arg(*useless, options.input));
    if (!PrintReports(reports, kComparisonColumns, options.format))
        return ExitCode::Failed;
    if (table.IsBroken())
        return ExitCode::ToleranceBroken;
    return HasProblems(reports) ? ExitCode::ReadWithProblems : ExitCode::Success;
}

} // namespace Tracelyn
