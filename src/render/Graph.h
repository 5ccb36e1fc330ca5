// The graph: the loaded model, the canvas that maps it, the cursors, and the operations that keys and mouse
// call.
#pragma once

#include "model/GraphData.h"
#include "reader/csv/CsvExport.h"
#include "render/Canvas.h"
#include "render/GraphLayout.h"
#include "render/GraphWindow.h"
#include "render/PlotOptions.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

class QPainter;

namespace Tracelyn {

class CConsole;
class CCsvFile;
class CGraphDrawingContext;
struct PainterMemory;

// The buttons and keys that are held down during a mouse message.
enum MouseFlags : unsigned {
    kLeftButton = 0x01,
    kRightButton = 0x02,
    kShift = 0x04,
    kControl = 0x08,
    kMiddleButton = 0x10,
    kOtherButton = 0x20
};

// What happened to the scroll bar; other numbers are allowed and do nothing.
enum class ScrollCode : int {
    LineLeft = 0,
    LineRight = 1,
    PageLeft = 2,
    PageRight = 3,
    ThumbPosition = 4,
    ThumbTrack = 5,
    LeftEnd = 6,
    RightEnd = 7
};

// The process-wide flag that the Open command raises and the next movement of the cursor takes.
void SetFileJustOpened(bool opened);
// Reads and clears the flag.
bool TakeFileJustOpened();

// Operations take the window that shows the graph and tell it what to repaint.
class CGraph {
public:
    CGraph();
    CGraph(const CGraph&) = delete;
    CGraph& operator=(const CGraph&) = delete;
    ~CGraph();

    CGraphData& GetData() { return m_Data; }
    const CGraphData& GetData() const { return m_Data; }
    const CCanvas& GetCanvas() const { return m_Canvas; }
    float GetZoom() const { return m_Canvas.GetZoom(); }
    bool CanZoomIn() const { return m_Canvas.CanZoomIn(); }
    bool CanZoomOut() const { return m_Canvas.CanZoomOut(); }
    bool IsConsoleOnLeft() const { return m_bConsoleOnLeft; }
    // The largest sample count of all sets less 1, as of the last frame; -1 for an empty model.
    int GetLastIndex() const { return m_nLastIndex; }

    // Draws one frame. Beyond the area it may draw some pixels more, which the painter must cut off.
    void Draw(CGraphWindow& window, QPainter& painter, const CPaintArea& area);

    // Draws the picture of an empty model, without a look at the model.
    void DrawBackground(QPainter& painter, const QRegion& region) const;

    // Drops the data and resets the canvas; the groups' expanded states are remembered by name.
    void Clear();
    // After a load: the next paint shows the whole range with the cursor in the middle.
    void SetResetPending() { m_bResetPending = true; }
    void RememberGroupStates() { m_Data.SaveExpandedStates(m_GroupStates); }
    void RestoreGroupStates() { m_Data.RestoreExpandedStates(m_GroupStates); }

    // Button released: expands or collapses the group whose header was hit.
    void ToggleGroupAt(CGraphWindow& window, unsigned buttons, int x, int y);
    // Button held: moves the cursor to the sample under x, unless the point is on a screen rectangle or
    // anything but the left button is held.
    void OnClick(CGraphWindow& window, unsigned buttons, int x, int y);

    void SelectNextGroup(CGraphWindow& window);
    void SelectPreviousGroup(CGraphWindow& window);
    // The number-th group shown in the graph, counting from 1; false when there is none.
    bool SelectGroup(CGraphWindow& window, int number);
    void ToggleSelectedGroup(CGraphWindow& window);
    void ToggleConsoleSide(CGraphWindow& window);
    void ToggleBackground(CGraphWindow& window);
    bool IsDark() const { return m_bDarkScheme; }
    // Whether curves show every sample in view, instead of one for each pixel column. Off at first.
    bool IsEveryEventShown() const { return m_Options.everyEvent; }
    void ShowEveryEvent(CGraphWindow& window, bool show);
    // Leaves the console out of the picture, or shows it again. It is there at first.
    void ShowConsole(CGraphWindow& window, bool show);
    // Of how many samples the picture shows one, by the last frame. 1 when none is left out.
    int GetSamplesPerShownOne() const;
    // Draws the signals that both have, in the same unit, from a second recording, dimmed behind those of
    // this one and on their scale; sample i of it stands at sample i + shift. Borrows the other until Clear,
    // or a call with null, which ends it.
    void ShowBehind(CGraphWindow& window, const CGraphData* other, int shift = 0);
    void InvalidateScreenRects(CGraphWindow& window, const ScreenRectKey& key,
                               Contents contents = Contents::Draw) const;

    int GetCursorPosition() const { return m_nCursor; }
    // kNoReference when there is none.
    int GetFixedCursor() const { return m_nFixedCursor; }
    // Kept within the data. The console moves aside when the cursor comes near it.
    void SetCursorPosition(CGraphWindow& window, int index);
    // By so many samples, as far as the data reach.
    void MoveCursor(CGraphWindow& window, int by);
    // A negative index clears it.
    void SetFixedCursor(CGraphWindow& window, int index);
    // Zooms around the cursor. The window is repainted only when the factor changes.
    void Zoom(CGraphWindow& window, float factor);
    // The position counts for the thumb codes only.
    void OnHScroll(CGraphWindow& window, ScrollCode code, uint32_t position);
    void UpdateScrollBar(CGraphWindow& window) const;

    // Throws what the file throws when it cannot be written.
    ExportEnd ExportCsv(CCsvFile& file, const support::Progress& progress = {}) const;

private:
    void ResetRange(const PixelRect& client);
    void DrawData(CGraphDrawingContext& context, const CConsole& console);
    void DrawVector(CGraphDrawingContext& context) const;
    void DrawCursorLines(CGraphDrawingContext& context, CCanvas& canvas) const;
    // The pixel column of a sample in the last frame.
    int GetColumn(int index) const;
    void InvalidateStrip(CGraphWindow& window, int pixelX) const;
    void InvalidateValues(CGraphWindow& window, Contents contents);

    CGraphData m_Data;
    CCanvas m_Canvas;
    // Made by the first frame after a load.
    std::unique_ptr<PainterMemory> m_Memory;
    bool m_bResetPending = false;
    int m_nCursor = 0;
    int m_nFixedCursor = kNoReference;
    bool m_bConsoleOnLeft = false;
    int m_nLastIndex = 0;
    // Of the last frame.
    ConsoleMetrics m_Console;
    bool m_bDarkScheme = true;
    PlotOptions m_Options;
    GroupStates m_GroupStates;
};

} // namespace Tracelyn
