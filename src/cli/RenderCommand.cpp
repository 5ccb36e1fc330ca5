#include "cli/Commands.h"

#include "render/Graph.h"
#include "render/Picture.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"

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

} // namespace

ExitCode RunRender(const Options& options) {
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

    const QByteArray picture = EncodePicture(graph, window, PictureFormatOf(options.output), analysis->name);
    if (support::IsInterrupted())
        return ExitCode::Failed;
    support::COutputFile output(options.output);
    if (picture.isEmpty() || !output.IsOpen() ||
        !support::WriteAll(output.GetDevice(), {picture.data(), static_cast<size_t>(picture.size())}) ||
        !output.Commit())
        return FailToWrite(options.output, output.GetErrorText());
    return ReportResults(*analysis);
}

} // namespace Tracelyn
