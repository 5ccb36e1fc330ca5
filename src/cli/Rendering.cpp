#include "cli/Rendering.h"

#include "measure/Comparison.h"
#include "render/Graph.h"
#include "support/OutputFile.h"
#include "tracelyn/Recording.h"

namespace Tracelyn {

bool ShowView(CGraph& graph, COffscreenWindow& window, const Options& options, QString& error) {
    const auto missing = ShowView(graph, window, options.view);
    if (missing)
        error = QStringLiteral("--toggle: the file has no group '%1'").arg(*missing);
    return !missing;
}

std::optional<int> ReadGood(CRecording& good, const Options& options, const support::Progress& progress,
                            FileReport& report) {
    ReadRecording(good, good.GetData(), *options.behind, options.accessLevel, progress, report);
    return report.isRead ? ZeroOf(good.GetData(), options, *options.behind, report) : std::nullopt;
}

bool ShowBehind(CGraph& graph, COffscreenWindow& window, const Options& options, const QString& file,
                const CGraphData& good, std::optional<int> goodZero, FileReport& report) {
    const CGraphData& data = graph.GetData();
    const auto zero = ZeroOf(data, options, file, report);
    if (!goodZero || !zero)
        return false;
    if (!HaveCommonSignal(MatchSignals(good, data))) {
        report.AddProblem(file, QStringLiteral("no signal is also in %1").arg(*options.behind));
        return false;
    }
    graph.ShowBehind(window, &good, *zero - *goodZero);
    return true;
}

std::optional<QString> WritePicture(const QByteArray& picture, const QString& path) {
    support::COutputFile output(path);
    if (picture.isEmpty() || !output.CommitWith(picture))
        return output.GetErrorText();
    return std::nullopt;
}

} // namespace Tracelyn
