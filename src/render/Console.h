// The floating box that lists every signal's value at the cursor. It is laid out and drawn in pixels.
#pragma once

#include "render/GraphDrawingContext.h"
#include "render/GraphLayout.h"

#include <QRegion>
#include <QString>

#include <vector>

namespace Tracelyn {

class CCanvas;
class CGraphDataGroup;

struct CursorPair {
    int cursor;
    // kNoReference when there is none.
    int fixedCursor;
};

// Borrows the groups of the model and lives as long as they do not change.
class CConsole {
public:
    // Places a box for every group shown in the console. MeasureConsole has counted their lines and given the
    // metrics; without a height there is no box.
    CConsole(const CGraphData& data, const PixelRect& client, const ConsoleMetrics& metrics, bool onLeft);

    // The pixels that belong to the console: nothing else may be drawn there.
    QRegion GetRegion() const;
    // The cells of the values that are too wide for their column.
    std::vector<PixelRect> GetWideCells(CSmallFont& font, const CursorPair& cursors) const;
    // Draws the boxes and registers the value cells with the canvas. What lies below the window is left out.
    void Draw(CGraphDrawingContext& context, CCanvas& canvas, const CursorPair& cursors) const;

private:
    struct Box {
        const CGraphDataGroup* group;
        // Top of the name row, or of the body where there is none.
        int top;
        int bodyTop;
        // Below the last row.
        int end;
    };

    // What a frame draws the boxes with.
    struct Pass {
        CGraphDrawingContext& context;
        CCanvas& canvas;
        CursorPair cursors;
    };

    void DrawBox(const Pass& pass, const Box& box) const;
    void DrawValueRow(const Pass& pass, const CGraphDataSet& set, int y) const;
    void DrawBitCell(const Pass& pass, const CGraphDataSet& set, int column, int y) const;
    // Calls visit(set, column, y) for every cell whose row begins inside the client area.
    template <class Visitor>
    void ForEachVisibleCell(const Box& box, Visitor visit) const;
    int GetRight() const { return m_nLeft + m_Metrics.width; }
    int GetValueX() const { return m_nLeft + LayoutMetrics::kConsoleIndent + m_Metrics.widestName; }
    int GetUnitX() const { return GetValueX() + m_Metrics.numberWidth; }
    // Of the value row at y. A value too wide for its column belongs to the cell all the same, so that no
    // digit of it stays behind.
    PixelRect GetValueCell(int y, int valueWidth) const;

    PixelRect m_Client;
    ConsoleMetrics m_Metrics;
    int m_nLeft;
    std::vector<Box> m_Boxes;
};

// The values at the cursor as the console shows them, those below the window too: a line for each signal with
// name, value and unit between tabs, and before a group's signals its name, where the console has one. On/off
// signals are 1 or 0.
QString ValueTable(const CGraphData& data, const CursorPair& cursors);

} // namespace Tracelyn
