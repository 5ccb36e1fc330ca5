#include "cli/Rendering.h"

#include "measure/Comparison.h"
#include "render/Graph.h"
#include "support/OutputFile.h"
#include "tracelyn/Recording.h"

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

void PlaceConsole(CGraph& graph, CGraphWindow& window, const Options& options) {
    if (options.console == ConsolePlace::None)
        graph.ShowConsole(window, false);
    else if (options.console && (options.console == ConsolePlace::Left) != graph.IsConsoleOnLeft())
        graph.ToggleConsoleSide(window);
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

} // namespace

bool ShowView(CGraph& graph, COffscreenWindow& window, const Options& options, QString& error) {
    if (!options.dark)
        graph.ToggleBackground(window);
    graph.ShowEveryEvent(window, options.everyEvent);
    graph.SetResetPending();
    window.Paint(graph);

    PlaceConsole(graph, window, options);
    if (!ToggleGroups(graph, options.toggledGroups, error))
        return false;
    MoveTo(graph, window, options);
    return true;
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
    const auto signals = MatchSignals(good, data);
    if (std::ranges::none_of(signals,
                             [](const CommonSignal& signal) { return signal.compared != nullptr; })) {
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
