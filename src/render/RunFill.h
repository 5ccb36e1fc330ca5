// Fills the pixels of lines quickly.
#pragma once

#include <QRect>

#include <cstddef>
#include <span>
#include <vector>

class QPainter;

namespace Tracelyn {

// Runs that are filled at a time.
inline constexpr size_t kRunsAtOnce = 512;

class CRunFill {
public:
    // Takes all the memory it needs; later there may be none.
    CRunFill();

    // Fills at most kRunsAtOnce rectangles with the painter's brush, whatever its pen. They may overlap and
    // come in any order; the runs of steep lines, columns one pixel wide, are what it is made for.
    void Fill(QPainter& painter, std::span<const QRect> runs);

private:
    void AddPieces(std::span<const QRect> columns);
    void AddRows(std::span<const QRect> columns, int top, int bottom);
    void FillStrip(QPainter& painter, int top);

    std::vector<QRect> m_Pieces;
    std::vector<QRect> m_Strip;
};

} // namespace Tracelyn
