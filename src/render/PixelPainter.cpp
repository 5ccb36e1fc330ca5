#include "render/PixelPainter.h"

#include "render/LineRuns.h"
#include "render/PainterMemory.h"
#include "render/VectorRuns.h"
#include "support/ShownText.h"

#include <QScopeGuard>

#include <algorithm>
#include <exception>
#include <optional>

namespace Tracelyn {

namespace {

// Between whole scale factors a region's pixels end inside those of the screen. Beside those of the region
// itself some more are drawn, which the window cuts off.
constexpr int kMargin = 2;

// Enough for the curves of most bands on a large screen.
constexpr size_t kMostRuns = 1 << 15;

// How far the ink of a text may reach out of its cell at either side.
constexpr int kOverhang = 32;

// Whether one rectangle covers just the two, since they are pieces of one column or one row that touch or
// overlap. It becomes the first then.
bool Join(PixelRect& a, const PixelRect& b) {
    if (a.left == b.left && a.right == b.right && a.GetWidth() == 1) {
        if (a.top > b.bottom || b.top > a.bottom)
            return false;
        a.top = std::min(a.top, b.top);
        a.bottom = std::max(a.bottom, b.bottom);
        return true;
    }
    if (a.top != b.top || a.bottom != b.bottom || a.GetHeight() != 1 || a.left > b.right || b.left > a.right)
        return false;
    a.left = std::min(a.left, b.left);
    a.right = std::max(a.right, b.right);
    return true;
}

// How many letters of the text, up to all of them, it takes until `isEnough`.
template <class IsEnough>
qsizetype FewestLetters(const QString& text, IsEnough isEnough) {
    qsizetype tooFew = -1;
    qsizetype enough = text.size();
    while (enough - tooFew > 1) {
        const qsizetype middle = (enough + tooFew) / 2;
        (isEnough(middle) ? enough : tooFew) = middle;
    }
    return enough;
}

} // namespace

CPixelPainter::CPixelPainter(QPainter& painter, PainterMemory& memory, const QRegion& region)
    : m_Painter(painter), m_Font(memory.font), m_bVector(IsVectorFile(painter)),
      m_bReachesPixels(!m_bVector && PixelsOf(painter)), m_Region(region),
      m_Drawn(region.boundingRect().adjusted(-kMargin, -kMargin, kMargin, kMargin)), m_Runs(memory.runs),
      m_Layers(memory.layers), m_RunFill(memory.runFill), m_ColumnFill(memory.columnFill),
      m_Tasks(memory.tasks) {
    m_Runs.clear();
    memory.frameSums.Clear();
    m_Layers.clear();
    m_Painter.setRenderHint(QPainter::Antialiasing, false);
    m_Painter.setFont(m_bVector ? m_Font.GetNamedFont() : m_Font.GetFont());
}

CPixelPainter::~CPixelPainter() {
    if (std::uncaught_exceptions() == m_nExceptions) {
        Finish();
        return;
    }
    try {
        m_ColumnFill.Finish(m_Tasks);
    } catch (...) { // NOLINT(bugprone-empty-catch): the first exception is the one that is told
    }
}

void CPixelPainter::Finish() {
    Flush();
    m_Filling = {};
    m_ColumnFill.Finish(m_Tasks);
}

void CPixelPainter::WaitForClip() {
    if (!m_Filling.ToQRect().intersects(m_ClipBounds.ToQRect()))
        return;
    m_Filling = {};
    m_ColumnFill.Finish(m_Tasks);
}

void CPixelPainter::SetPen(const QColor& color) {
    if (m_bVector)
        Flush();
    m_Pen = color;
    m_nPen = color.rgba();
}

void CPixelPainter::SetClip(const QRegion& clip) {
    Flush();
    m_Clip = clip & m_Drawn;
    if (!m_bVector)
        m_Painter.setClipRegion(m_Clip);
    m_ClipBounds = PixelRect::From(m_Clip.boundingRect());
    m_Grid.reset();
}

const PixelGrid* CPixelPainter::GetGrid() {
    if (!m_Grid)
        m_Grid = PixelsOf(m_Painter);
    return *m_Grid ? &**m_Grid : nullptr;
}

// Lines of a curve meet in their columns: most runs go on where the one before ended.
inline void CPixelPainter::AddRun(const PixelRect& run) {
    if (m_Layers.empty() || m_Layers.back().color != m_nPen || !Join(m_Runs.back(), run))
        AddSeparateRun(run);
}

void CPixelPainter::AddSeparateRun(const PixelRect& run) {
    const bool isSameLayer = !m_Layers.empty() && m_Layers.back().color == m_nPen;
    if (m_Runs.size() == kMostRuns) {
        Flush();
        m_Layers.push_back({m_nPen, 0});
    } else if (!isSameLayer) {
        m_Layers.push_back({m_nPen, m_Runs.size()});
    }
    m_Runs.push_back(run);
}

void CPixelPainter::Line(int x1, int y1, int x2, int y2) {
    ForEachLineRun(x1, y1, x2, y2, m_ClipBounds, [this](int x, int y, int width, int height) {
        AddRun({x, y, x + width, y + height});
    });
}

void CPixelPainter::Bar(const PixelRect& rect) {
    const PixelRect visible = rect.CutTo(m_ClipBounds);
    if (visible.left < visible.right && visible.top < visible.bottom)
        AddRun(visible);
}

std::vector<RunLayer> CPixelPainter::TakeLayers() const {
    std::vector<RunLayer> layers;
    size_t end = m_Runs.size();
    for (auto layer = m_Layers.rbegin(); layer != m_Layers.rend(); end = layer++->begin)
        layers.push_back({layer->color, std::span(m_Runs).subspan(layer->begin, end - layer->begin)});
    std::ranges::reverse(layers);
    return layers;
}

void CPixelPainter::Flush() {
    if (m_Runs.empty())
        return;
    // Also when memory runs out, as the destructor would try again.
    const auto clear = qScopeGuard([this] {
        m_Runs.clear();
        m_Layers.clear();
    });
    const std::vector<RunLayer> layers = TakeLayers();
    if (m_bVector) {
        DrawAsLines(m_Painter, m_Runs, QColor::fromRgba(m_Layers.front().color));
        return;
    }
    const PixelGrid* const grid = GetGrid();
    if (grid && CColumnFill::IsWorthIt(*grid, layers)) {
        m_Filling = PixelRect::From(m_Filling.ToQRect() | m_ClipBounds.ToQRect());
        m_ColumnFill.Begin(*grid, layers, m_Runs, m_Tasks);
        return;
    }
    WaitForClip();
    if (grid) {
        for (const RunLayer& layer : layers)
            FillRuns(*grid, layer);
        return;
    }
    for (const RunLayer& layer : layers) {
        m_Painter.setBrush(QColor::fromRgba(layer.color));
        for (size_t at = 0; at < layer.runs.size(); at += kRunsAtOnce)
            m_RunFill.Fill(m_Painter, layer.runs.subspan(at, std::min(kRunsAtOnce, layer.runs.size() - at)));
    }
}

void CPixelPainter::Rectangle(const PixelRect& rect) {
    if (rect.left >= rect.right || rect.top >= rect.bottom)
        return;
    Fill(rect, m_Pen);
    if (m_Brush != m_Pen && rect.GetWidth() > 2 && rect.GetHeight() > 2)
        Fill({rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1}, m_Brush);
}

void CPixelPainter::Fill(const PixelRect& rect, const QColor& color) {
    const QRect visible = rect.ToQRect() & m_ClipBounds.ToQRect();
    if (visible.isEmpty())
        return;
    if (m_bVector && color == m_Pen) {
        AddRun(PixelRect::From(visible));
        return;
    }
    Flush();
    WaitForClip();
    const PixelRect pixels = PixelRect::From(visible);
    if (const PixelGrid* const grid = GetGrid())
        FillRuns(*grid, {color.rgb(), std::span(&pixels, 1)});
    else
        m_Painter.fillRect(visible, color);
}

void CPixelPainter::Polygon(std::span<const QPoint> points) {
    Flush();
    WaitForClip();
    m_Painter.setPen(m_Pen);
    m_Painter.setBrush(m_Brush);
    m_Painter.drawPolygon(points.data(), static_cast<int>(points.size()));
}

// A cursor step repaints the values between names and units, which would take longest of all. Where a pixel
// is not a whole one of the screen, letters are not as wide as they are measured.
bool CPixelPainter::IsSeen(int x, int y, const QString& text) const {
    const auto reaches = [this](const QRect& rect) {
        return m_Clip.intersects(rect) && m_Region.intersects(rect);
    };
    const QRect cell(x, y, GetTextWidth(text), kTextHeight);
    if (!reaches({x - kOverhang, m_Drawn.top(), cell.width() + 2 * kOverhang, m_Drawn.height()}))
        return false;
    return m_bVector || !m_bReachesPixels || reaches(cell) || !CSmallFont::KnowsInk(text) ||
           reaches(m_Font.GetInk(text).translated(x, y + m_Font.GetAscent()).adjusted(-1, -1, 1, 1));
}

// As many letters go at both ends as stand out there. Measuring them one by one would take long for some
// texts.
void CPixelPainter::CutToClip(int& x, QString& text) const {
    const int end = x + GetTextWidth(text);
    if (x < m_ClipBounds.left) {
        const qsizetype cut = FewestLetters(
            text, [&](qsizetype count) { return end - GetTextWidth(text.mid(count)) >= m_ClipBounds.left; });
        text.remove(0, cut < text.size() && text[cut].isLowSurrogate() ? cut + 1 : cut);
        x = end - GetTextWidth(text);
    }
    if (end > m_ClipBounds.right) {
        const qsizetype cut = FewestLetters(text, [&](qsizetype count) {
            return x + GetTextWidth(text.chopped(count)) <= m_ClipBounds.right;
        });
        text = support::CutText(text, text.size() - cut);
    }
}

void CPixelPainter::Text(int x, int y, const QString& text) {
    if (!IsSeen(x, y, text))
        return;
    if (m_TextBackground.isValid())
        Fill({x, y, x + GetTextWidth(text), y + kTextHeight}, m_TextBackground);
    Flush();
    WaitForClip();
    m_Painter.setPen(m_Text);
    const QPoint base(x, y + m_Font.GetAscent());
    if (m_bReachesPixels && m_Font.GetDigits().Draw(m_Painter, base, text))
        return;
    QString shown = support::ShownText(text);
    if (m_bVector)
        CutToClip(x, shown);
    m_Painter.drawText(QPoint(x, base.y()), shown);
}

} // namespace Tracelyn
