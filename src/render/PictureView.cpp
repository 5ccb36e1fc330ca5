#include "render/PictureView.h"

#include "render/Graph.h"

namespace Tracelyn {

namespace {

std::optional<QString> ToggleGroups(CGraph& graph, const QStringList& names) {
    for (const QString& name : names) {
        const CGraphData& data = graph.GetData();
        CGraphDataGroup* const shown = data.FindGraphGroup(name);
        CGraphDataGroup* const group = shown == nullptr ? data.FindGroup(name) : shown;
        if (group == nullptr)
            return name;
        group->m_bExpanded = !group->m_bExpanded;
    }
    return std::nullopt;
}

void PlaceConsole(CGraph& graph, CGraphWindow& window, const PictureView& view) {
    if (view.console == ConsolePlace::None)
        graph.ShowConsole(window, false);
    else if (view.console && (view.console == ConsolePlace::Left) != graph.IsConsoleOnLeft())
        graph.ToggleConsoleSide(window);
}

void MoveTo(CGraph& graph, CGraphWindow& window, const PictureView& view) {
    if (view.cursor)
        graph.SetCursorPosition(window, *view.cursor);
    if (view.fixedCursor)
        graph.SetFixedCursor(window, *view.fixedCursor);
    if (view.zoom)
        graph.Zoom(window, *view.zoom);
    if (view.scroll)
        graph.OnHScroll(window, ScrollCode::ThumbPosition, static_cast<uint32_t>(*view.scroll));
}

} // namespace

std::optional<QString> ShowView(CGraph& graph, COffscreenWindow& window, const PictureView& view) {
    if (!view.dark)
        graph.ToggleBackground(window);
    graph.ShowEveryEvent(window, view.everyEvent);
    graph.SetResetPending();
    window.Paint(graph);

    PlaceConsole(graph, window, view);
    if (auto missing = ToggleGroups(graph, view.toggledGroups))
        return missing;
    MoveTo(graph, window, view);
    return std::nullopt;
}

} // namespace Tracelyn
