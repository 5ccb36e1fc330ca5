// Draws whole pixels: 1-pixel lines without antialiasing, bordered rectangles and small text.
#pragma once

#include "render/Mapping.h"
#include "render/PixelGrid.h"
#include "render/SmallFont.h"

#include <QColor>
#include <QPainter>
#include <QPoint>
#include <QRegion>
#include <QString>

#include <exception>
#include <optional>
#include <span>
#include <vector>

namespace support {
class CBackgroundTasks;
}

namespace Tracelyn {

class CColumnFill;
class CRunFill;
struct ColoredRuns;
struct PainterMemory;

// Wraps a borrowed painter, of pixels or of a file of lines and texts. It works out the pixels of a line
// itself, so that a line looks the same whatever part of it is repainted and at every scale factor of the
// screen. The runs of these pixels are collected. Where the painter's pixels can be reached they are written
// there, those of dense curves in one pass; otherwise they reach the painter in bundles.
class CPixelPainter {
public:
    // Pixels outside the region need not be drawn. The memory serves one painter at a time.
    CPixelPainter(QPainter& painter, PainterMemory& memory, const QRegion& region);
    CPixelPainter(const CPixelPainter&) = delete;
    CPixelPainter& operator=(const CPixelPainter&) = delete;
    ~CPixelPainter();

    void SetPen(const QColor& color);
    void SetBrush(const QColor& color) { m_Brush = color; }
    void SetTextColor(const QColor& color) { m_Text = color; }
    // Text is drawn over a filled cell of this colour; an invalid colour makes the background transparent.
    void SetTextBackground(const QColor& color) { m_TextBackground = color; }
    void SetClip(const QRegion& clip);
    const QRegion& GetClip() const { return m_Clip; }
    // A file of lines and texts knows no clip: only the bounds of the clip cut, and texts between letters.
    bool IsVector() const { return m_bVector; }
    // Whether a coordinate is a whole number of pixels that can be written to: many runs are filled fast
    // then.
    bool ReachesPixels() const { return m_bReachesPixels; }

    // From the first point up to, but without, the second.
    void Line(int x1, int y1, int x2, int y2);
    // A rectangle in the pen's colour; nothing when empty. It is collected as lines are.
    void Bar(const PixelRect& rect);
    // Border in the pen's colour inside the bounds, filled with the brush; nothing when empty.
    void Rectangle(const PixelRect& rect);
    void Fill(const PixelRect& rect, const QColor& color);
    void Polygon(std::span<const QPoint> points);
    // The point is the top left corner of the text's cell.
    void Text(int x, int y, const QString& text);

    int GetTextWidth(const QString& text) const { return m_Font.GetTextWidth(text); }
    // Height of a text's cell.
    static constexpr int kTextHeight = 13;

    // Hands the collected lines to the painter. Their pixels may be filled while other parts of the picture
    // are drawn.
    void Flush();
    // All pixels are there when it returns.
    void Finish();

private:
    // Pixels in the clip are filled when it returns, those of lines that are still collected aside.
    void WaitForClip();
    // The painter's pixels in the clip; null when they cannot be reached.
    const PixelGrid* GetGrid();
    void AddRun(const PixelRect& run);
    void AddSeparateRun(const PixelRect& run);
    std::vector<RunLayer> TakeLayers() const;
    void CutToClip(int& x, QString& text) const;
    bool IsSeen(int x, int y, const QString& text) const;

    QPainter& m_Painter;
    CSmallFont& m_Font;
    bool m_bVector;
    bool m_bReachesPixels;
    QRegion m_Region;
    // Bounds of what is drawn: clipping at a region of many pieces costs more than it saves.
    QRect m_Drawn;
    QColor m_Pen = Qt::black;
    QRgb m_nPen = m_Pen.rgba();
    QColor m_Brush = Qt::white;
    QColor m_Text = Qt::black;
    QColor m_TextBackground;
    QRegion m_Clip;
    PixelRect m_ClipBounds;
    std::optional<std::optional<PixelGrid>> m_Grid; // once it was asked for in this clip
    std::vector<PixelRect>& m_Runs;
    std::vector<ColoredRuns>& m_Layers; // each over the one before
    CRunFill& m_RunFill;
    CColumnFill& m_ColumnFill;
    support::CBackgroundTasks& m_Tasks;
    PixelRect m_Filling; // bounds of what m_ColumnFill may be filling
    int m_nExceptions = std::uncaught_exceptions();
};

} // namespace Tracelyn
