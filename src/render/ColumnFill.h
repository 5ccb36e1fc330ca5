// Fills runs of pixels of several colours in one pass over the rows of a picture. Curves of noise that lie
// over each other are thousands of columns, each of other rows than its neighbours: filled one by one, they
// touch each row of the picture as many times as there are columns in it.
#pragma once

#include "render/ColumnStrip.h"
#include "render/PixelGrid.h"
#include "support/BackgroundTasks.h"

#include <QRect>
#include <QRegion>
#include <QRgb>

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

    // Adds tasks that fill the runs, over all that was begun before. They may overlap and come in any order,
    // but at most 65,535 of one layer over one column; they are copied. Other cores fill while the caller
    // goes on: until Finish the picture must stay where it is in memory, and the caller must leave these
    // pixels alone. Throws what the tasks throw; Finish is still to be called.
    void Begin(const PixelGrid& grid, std::span<const RunLayer> layers, support::CBackgroundTasks& tasks);
    // Finishes the tasks: all pixels are filled when it returns. Throws what they throw, that memory ran out.
    void Finish(support::CBackgroundTasks& tasks);

private:
    void BeginOnePass(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers,
                      support::CBackgroundTasks& tasks);
    void AddRuns(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers);
    void AddRun(const PixelRect& pixels, size_t layer);

    QRegion m_Begun; // since Finish
    // Of one pass.
    std::vector<CColumnStrip*> m_Strips;
    int m_nStripColumns = 0;
    int m_nStrip = 0; // of the last run
    std::vector<QRgb> m_Colors;
    std::vector<std::unique_ptr<CColumnStrip>> m_AllStrips;
    size_t m_nBegun = 0; // of these, since Finish
};

} // namespace Tracelyn
