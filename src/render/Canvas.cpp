#include "render/Canvas.h"

#include "render/PixelPainter.h"

#include <algorithm>
#include <array>

namespace Tracelyn {

namespace {

constexpr int kNoPixel = CMapping::kNoPixel;

// Moves the request [r1, r2] into the full range [f1, f2]; a request that is wider becomes the full range.
void ClampRange(float f1, float f2, float& r1, float& r2) {
    if (f2 - f1 < r2 - r1) {
        r1 = f1;
        r2 = f2;
    } else if (f1 > r1) {
        r2 += f1 - r1;
        r1 = f1;
    } else if (f2 < r2) {
        r1 -= r2 - f2;
        r2 = f2;
    }
}

} // namespace

CCanvas::CCanvas() {
    SetWorld({0.0F, 0.0F, 100.0F, 100.0F});
}

void CCanvas::SetWorld(const WorldRect& world) {
    m_Full = world;
    m_Visible = world;
    m_Pixels = {0, 0, TruncateToInt(double{world.x2} - world.x1), TruncateToInt(double{world.y2} - world.y1)};
    SetMapping(m_Pixels, m_Visible);
}

void CCanvas::SetVisible(const WorldRect& visible) {
    m_Visible = visible;
    ClampRange(m_Full.x1, m_Full.x2, m_Visible.x1, m_Visible.x2);
    ClampRange(m_Full.y1, m_Full.y2, m_Visible.y1, m_Visible.y2);
    SetMapping(m_Pixels, m_Visible);
}

void CCanvas::Zoom(float factor, float centre) {
    m_bCanZoomIn = factor <= kMaximumZoom;
    m_bCanZoomOut = factor > 1.0F;
    m_fZoom = std::clamp(factor, 1.0F, kMaximumZoom);
    const float half = (m_Full.x2 - m_Full.x1) / m_fZoom * 0.5F;
    SetVisible({centre - half, m_Visible.y1, centre + half, m_Visible.y2});
}

void CCanvas::BeginDraw(CPixelPainter& painter, const PixelRect& client) {
    m_pPainter = &painter;
    m_Pixels = client;
    SetMapping(m_Pixels, m_Visible);
    ClearScreenRects();
    m_nLines = 0;
}

void CCanvas::MoveTo(float x, float y) {
    m_nPenX = WorldToPixelX(x);
    m_nPenY = WorldToPixelY(y);
    m_Pen = {x, y};
}

void CCanvas::LineTo(float x, float y) {
    ++m_nLines;
    if (x == m_Pen.x && y == m_Pen.y)
        return; // every other line of a curve that changes with each sample; it has no pixels
    const int fromX = m_nPenX;
    const int fromY = m_nPenY;
    MoveTo(x, y);
    if (fromX != kNoPixel && fromY != kNoPixel && m_nPenX != kNoPixel && m_nPenY != kNoPixel)
        m_pPainter->Line(fromX, fromY, m_nPenX, m_nPenY);
}

void CCanvas::Rectangle(float x1, float y1, float x2, float y2) {
    const std::array xs{WorldToPixelX(x1), WorldToPixelX(x2)};
    const std::array ys{WorldToPixelY(y1), WorldToPixelY(y2)};
    const auto [left, right] = std::ranges::minmax(xs);
    const auto [top, bottom] = std::ranges::minmax(ys);
    if (left != kNoPixel && top != kNoPixel)
        m_pPainter->Rectangle({left, top, right, bottom});
}

void CCanvas::Triangle(float x1, float y1, float x2, float y2, float x3, float y3) {
    const std::array points{QPoint(WorldToPixelX(x1), WorldToPixelY(y1)),
                            QPoint(WorldToPixelX(x2), WorldToPixelY(y2)),
                            QPoint(WorldToPixelX(x3), WorldToPixelY(y3))};
    if (std::ranges::none_of(points, [](QPoint p) { return p.x() == kNoPixel || p.y() == kNoPixel; }))
        m_pPainter->Polygon(points);
}

void CCanvas::SetPixel(float x, float y) {
    const int px = WorldToPixelX(x);
    const int py = WorldToPixelY(y);
    if (px != kNoPixel && py != kNoPixel)
        m_pPainter->Line(px, py, px + 1, py);
}

void CCanvas::TextOut(float x, float y, const QString& text) {
    const int px = WorldToPixelX(x);
    const int py = WorldToPixelY(y);
    if (px != kNoPixel && py != kNoPixel)
        m_pPainter->Text(px, py, text);
}

void CCanvas::AddScreenRect(const ScreenRectKey& key, const PixelRect& rect) {
    m_ScreenRects.push_back({rect.left, rect.top, rect.right, rect.bottom, key});
}

void CCanvas::AddScreenRect(const ScreenRectKey& key, float x1, float y1, float x2, float y2) {
    AddScreenRect(key, {WorldToPixelX(x1), WorldToPixelY(y1), WorldToPixelX(x2), WorldToPixelY(y2)});
}

const SCREENRECT* CCanvas::HitTest(int x, int y) const {
    const auto found = std::ranges::find_if(m_ScreenRects, [=](const SCREENRECT& rect) {
        return rect.left <= x && x <= rect.right && rect.top <= y && y <= rect.bottom;
    });
    return found == m_ScreenRects.end() ? nullptr : &*found;
}

const SCREENRECT* CCanvas::FindScreenRect(const ScreenRectKey& key) const {
    const auto found = std::ranges::find(m_ScreenRects, key, &SCREENRECT::key);
    return found == m_ScreenRects.end() ? nullptr : &*found;
}

void CCanvas::CollectScreenRects(const ScreenRectKey& key, std::vector<SCREENRECT>& out) const {
    std::ranges::copy_if(m_ScreenRects, std::back_inserter(out),
                         [&](const SCREENRECT& rect) { return rect.key == key; });
}

} // namespace Tracelyn
