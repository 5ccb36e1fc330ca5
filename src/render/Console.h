// The floating box that lists every signal's value at the cursor.
#pragma once

#include "render/GraphDrawingContext.h"

#include <QRegion>

#include <vector>

namespace Tracelyn {

class CCanvas;
class CGraphDataGroup;

struct CursorPair {
    int cursor;
    // kNoReference when there is none.
    int fixedCursor;
};

class CConsole {
public:
    // Places the boxes of all groups shown in the console; the layout has measured the context's console
    // metrics.
    CConsole(CGraphDrawingContext& context, bool onLeft);

    // The pixels that belong to the console: nothing else may be drawn there.
    QRegion GetRegion() const;
    // Draws the boxes and registers the value cells with the canvas, whose mapping must be the identity. What
    // lies below the window is left out.
    void Draw(CCanvas& canvas, const CursorPair& cursors);

private:
    struct Box {
        const CGraphDataGroup* group;
        // Top of the name row, or of the body where there is none.
        int top;
        int bodyTop;
        // Below the last row.
        int end;
    };

    void DrawBox(CCanvas& canvas, const Box& box, const CursorPair& cursors);
    void DrawRows(CCanvas& canvas, const Box& box, const CursorPair& cursors);
    void DrawValueRow(CCanvas& canvas, const CGraphDataSet& set, int y, const CursorPair& cursors);
    void DrawBitCell(CCanvas& canvas, const CGraphDataSet& set, int column, int y, int cursor);
    void TextAt(CCanvas& canvas, int x, int y, const QString& text);

    CGraphDrawingContext& m_Context;
    int m_nLeft;
    std::vector<Box> m_Boxes;
};

} // namespace Tracelyn
