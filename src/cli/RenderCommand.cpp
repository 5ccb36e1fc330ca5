#include "cli/Commands.h"
#include "cli/SeveralFiles.h"
#include "measure/Comparison.h"

#include "render/Graph.h"
#include "render/Picture.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"

#include <algorithm>

namespace Tracelyn {

namespace {

// Of several groups of a name the first one that the picture shows. False when no group has one of the names.
bool ToggleGroups(CGraph& graph, const QStringList& names, QString& error) {
    for (const QString& name : names) {
        const CGraphData& data = graph.GetData();
        CGraphDataGroup* const shown = data.FindGraphGroup(name);
        CGraphDataGroup* const group = shown == nullptr ? data.FindGroup(name) : shown;
        if (group == nullptr) {
            error = QStringLiteral("--toggle: the file has no group '%1'").arg(name);
            return false;
        }
        group->m_bExpanded = !group->m_bExpanded;
    }
    return true;
}

void MoveTo(CGraph& graph, CGraphWindow& window, const Options& options) {
    if (options.cursor)
        graph.SetCursorPosition(window, *options.cursor);
    if (options.fixedCursor)
        graph.SetFixedCursor(window, *options.fixedCursor);
    if (options.zoom)
        graph.Zoom(window, *options.zoom);
    if (options.scroll)
        graph.OnHScroll(window, ScrollCode::ThumbPosition, static_cast<uint32_t>(*options.scroll));
}

// Reads the recording to compare with and shows it behind the other one. False, with the reason in the
// report, when there is nothing to compare.
bool ShowBehind(CGraph& graph, CGraphWindow& window, const Options& options, CRecording& good,
                FileReport& report) {
    {
        CJointProgress progress(1);
        ReadRecording(good, *options.behind, options.accessLevel, progress.Of(0), report);
    }
    if (!report.isRead)
        return false;
    const CGraphData& data = graph.GetData();
    const auto goodZero = ZeroOf(good.GetData(), options, *options.behind, report);
    const auto zero = ZeroOf(data, options, options.input, report);
    if (!goodZero || !zero)
        return false;
    const auto signals = MatchSignals(good.GetData(), data);
    if (std::ranges::none_of(signals,
                             [](const CommonSignal& signal) { return signal.compared != nullptr; })) {
        report.AddProblem(options.input, QStringLiteral("no signal is also in %1").arg(*options.behind));
        return false;
    }
    graph.ShowBehind(window, &good.GetData(), *zero - *goodZero);
    return true;
}

} // namespace

ExitCode RunRender(const Options& options) {
    if (options.behind && support::IsSameFile(*options.behind, options.input))
        return WrongUsage(QStringLiteral("'%1' is the recording itself").arg(*options.behind));
    if (options.behind && support::IsSameFile(*options.behind, options.output))
        return WrongUsage(
            QStringLiteral("'%1' is the file to read, which it would replace").arg(options.output));
    if (options.alignSignal && !options.behind)
        return WrongUsage(QStringLiteral("--align needs --compare"));
    CRecording good; // outlives the graph, which borrows it
    FileReport report;
    CGraph graph;
    const auto analysis = LoadInput(options, graph.GetData());
    if (!analysis)
        return ExitCode::Failed;
    if (IsNothingRead(*analysis, graph.GetData())) {
        ReportResults(*analysis);
        return ExitCode::Failed;
    }
    COffscreenWindow window(options.size);
    if (window.GetImage().isNull())
        return Fail(QStringLiteral("Not enough memory for the picture"));
    if (!options.dark)
        graph.ToggleBackground(window);
    graph.ShowEveryEvent(window, options.everyEvent);
    graph.SetResetPending();
    window.Paint(graph);

    if (options.consoleOnLeft && *options.consoleOnLeft != graph.IsConsoleOnLeft())
        graph.ToggleConsoleSide(window);
    QString error;
    if (!ToggleGroups(graph, options.toggledGroups, error))
        return WrongUsage(error);
    MoveTo(graph, window, options);
    const bool isComplete = !options.behind || ShowBehind(graph, window, options, good, report);
    if (support::IsInterrupted())
        return ExitCode::Failed;
    for (const QString& problem : report.problems)
        PrintError(problem);
    if (!isComplete)
        return ExitCode::ReadWithProblems;

    const QByteArray picture = EncodePicture(graph, window, PictureFormatOf(options.output), analysis->name);
    if (support::IsInterrupted())
        return ExitCode::Failed;
    support::COutputFile output(options.output);
    if (picture.isEmpty() || !output.CommitWith(picture))
        return FailToWrite(options.output, output.GetErrorText());
    const ExitCode code = ReportResults(*analysis);
    return report.problems.isEmpty() ? code : ExitCode::ReadWithProblems;
}

} // namespace Tracelyn
