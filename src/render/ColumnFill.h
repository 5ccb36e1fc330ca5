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

    // Begins to fill the runs, over all that was begun before. They may overlap and come in any order. Other
    // cores fill while the caller goes on, which must leave these pixels alone until Finish.
    void Begin(const PixelGrid& grid, std::span<const RunLayer> layers);
    // Returns when all pixels are filled.
    void Finish();

private:
    void BeginOnePass(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers);
    void AddRuns(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers);
    void AddRun(const PixelRect& pixels, size_t layer);

    QRegion m_Begun; // since Finish
    // Of one pass.
    std::vector<CColumnStrip*> m_Strips;
    int m_nStripColumns = 0;
    int m_nStrip = 0; // of the last run
    std::vector<QRgb> m_Colors;
    // Of all passes since Finish come first.
    std::vector<std::unique_ptr<CColumnStrip>> m_AllStrips;
    size_t m_nBegun = 0;
    support::CBackgroundTasks m_Tasks; // last, since it may use the strips as long as it is there
};

} // namespace Tracelyn
