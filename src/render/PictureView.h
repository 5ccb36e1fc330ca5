// Which part of a graph a picture shows, for programs that have neither keys nor a mouse.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace Tracelyn {

class CGraph;
class COffscreenWindow;

enum class ConsolePlace { Left, Right, None };

// What is left open is as the window shows it after a load.
struct PictureView {
    QSize size{1280, 720}; // in pixels
    bool dark = true;
    std::optional<int> cursor;      // a sample; kept within the data
    std::optional<int> fixedCursor; // a sample; a negative one means none
    std::optional<float> zoom;      // finite
    std::optional<int> scroll;      // the first sample in view, 0 or more
    std::optional<ConsolePlace> console;
    QStringList toggledGroups; // opened or closed, each as often as it is named
    bool everyEvent = false;
};

// Shows that part of the loaded graph in a window of the view's size. Of several groups of a name it toggles
// the first one that the graph shows. Returns the name of a group that the recording does not have, and the
// picture is unfinished; nothing when all went well.
std::optional<QString> ShowView(CGraph& graph, COffscreenWindow& window, const PictureView& view);

} // namespace Tracelyn
