// A user at the graph: moves, clicks, zooms and scrolls, and looks whether the window shows what it should.
#pragma once

namespace Tracelyn {

class CGraph;
class Settings;

// Shows the loaded graph in a window and does what the settings choose. Stops the program when the window,
// repainted in parts, differs from one that is painted as a whole.
void Drive(CGraph& graph, Settings& settings);

} // namespace Tracelyn
