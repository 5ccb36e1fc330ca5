// Fills runs of pixels of several colours in one pass over the rows of a picture. Curves of noise that lie
// over each other are thousands of columns, each of other rows than its neighbours: filled one by one, they
// touch each row of the picture as many times as there are columns in it.
#pragma once

#include "render/ColumnStrip.h"
#include "render/PixelGrid.h"
#include "support/BackgroundTasks.h"

#include <QRect>
#include <QRegion>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Tracelyn {

class CColumnFill {
public:
    // Whether the runs are high and cover so much of what surrounds them that this is faster than FillRuns.
    static bool IsWorthIt(const PixelGrid& grid, std::span<const RunLayer> layers);

    // Adds tasks that fill the layers, over all that was begun before. Their runs may overlap and come in any
    // order, but at most 65,535 of one layer over one column. `runs` is what holds them; afterwards it holds
    // others that nobody needs. Other cores fill while the caller goes on: until Finish the picture must stay
    // where it is in memory, and the caller must leave these pixels alone. Throws what the tasks throw;
    // Finish is still to be called.
    void Begin(const PixelGrid& grid, std::span<const RunLayer> layers, std::vector<PixelRect>& runs,
               support::CBackgroundTasks& tasks);
    // Finishes the tasks: all pixels are filled when it returns. Throws what they throw, that memory ran out.
    void Finish(support::CBackgroundTasks& tasks);

private:
    void BeginOnePass(const PixelGrid& grid, const QRect& clip, std::vector<RunLayer> layers,
                      support::CBackgroundTasks& tasks);
    CColumnStrip& NextStrip();

    QRegion m_Begun; // since Finish
    std::vector<std::unique_ptr<CColumnStrip>> m_Strips;
    size_t m_nStrips = 0;                       // of these, that tasks may be filling
    std::vector<std::vector<PixelRect>> m_Runs; // of which layers consist
    size_t m_nRuns = 0;                         // of these, since Finish
};

} // namespace Tracelyn
