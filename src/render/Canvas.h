// What a frame is drawn on: the visible range with its zoom, drawing in world coordinates, and the clickable
// rectangles.
#pragma once

#include "render/Mapping.h"

#include <QString>

#include <limits>
#include <vector>

namespace Tracelyn {

class CPixelPainter;

// What a clickable rectangle belongs to: the name in a group's header, its underline, or a value in the
// console.
enum class ScreenRectKind { GroupName, GroupUnderline, Value };

// The kind tells a group that is called "#Value#" from a value.
struct ScreenRectKey {
    ScreenRectKind kind;
    QString name;
    bool operator==(const ScreenRectKey&) const = default;
};

inline ScreenRectKey GroupNameRect(const QString& group) {
    return {ScreenRectKind::GroupName, group};
}
inline const ScreenRectKey kGroupUnderlineRect{ScreenRectKind::GroupUnderline, QStringLiteral("#Group#")};
inline const ScreenRectKey kValueRect{ScreenRectKind::Value, QStringLiteral("#Value#")};

// A clickable rectangle in pixels; all four bounds are inside it.
struct SCREENRECT {
    int left;
    int top;
    int right;
    int bottom;
    ScreenRectKey key;
};

inline constexpr float kMaximumZoom = 40.0F;

class CCanvas {
public:
    CCanvas();

    // Full and visible extent become the given rectangle.
    void SetWorld(const WorldRect& world);
    // Shows the given part, moved or widened so that it stays inside the full extent.
    void SetVisible(const WorldRect& visible);
    // What is drawn from now on is mapped like this.
    void SetMapping(const PixelRect& pixels, const WorldRect& world) {
        m_Mapping = {pixels, world};
        m_Pen = kNoPoint;
    }
    // Shows full width / factor around centre; the factor is kept within 1 and 40.
    void Zoom(float factor, float centre);

    // From BeginDraw to EndDraw the canvas draws with the borrowed painter. BeginDraw forgets the rectangles
    // of the frame before.
    void BeginDraw(CPixelPainter& painter, const PixelRect& client);
    void EndDraw() { m_pPainter = nullptr; }

    const WorldRect& GetFull() const { return m_Full; }
    const WorldRect& GetVisible() const { return m_Visible; }
    const PixelRect& GetPixelRect() const { return m_Pixels; }
    float GetZoom() const { return m_fZoom; }
    bool CanZoomIn() const { return m_bCanZoomIn; }
    bool CanZoomOut() const { return m_bCanZoomOut; }
    // The mapping of what is drawn now.
    const CMapping& GetMapping() const { return m_Mapping; }
    int WorldToPixelX(float x) const { return m_Mapping.WorldToPixelX(x); }
    int WorldToPixelY(float y) const { return m_Mapping.WorldToPixelY(y); }
    // The visible extent over the client area of the last frame, whatever was drawn after it: where a sample
    // is on the screen, and which sample is under the mouse.
    CMapping GetTimeAxis() const { return {m_Pixels, m_Visible}; }

    // Drawing in world coordinates with the painter's pen and brush. Lines leave their end point out; a
    // coordinate that is not a number draws nothing.
    void MoveTo(float x, float y);
    void LineTo(float x, float y);
    void Rectangle(float x1, float y1, float x2, float y2);
    void TextOut(float x, float y, const QString& text);
    // Ready, but nothing draws with these two.
    void Triangle(float x1, float y1, float x2, float y2, float x3, float y3);
    void SetPixel(float x, float y);
    // LineTo calls since BeginDraw.
    int GetLineCount() const { return m_nLines; }

    // Registers a clickable rectangle, given in pixels or in world coordinates; its right and bottom edges
    // belong to it.
    void AddScreenRect(const ScreenRectKey& key, const PixelRect& rect);
    void AddScreenRect(const ScreenRectKey& key, float x1, float y1, float x2, float y2);
    // The first that holds the point, the first of that key; null when there is none. Valid until the next
    // frame.
    const SCREENRECT* HitTest(int x, int y) const;
    const SCREENRECT* FindScreenRect(const ScreenRectKey& key) const;
    void CollectScreenRects(const ScreenRectKey& key, std::vector<SCREENRECT>& out) const;
    void ClearScreenRects() { m_ScreenRects.clear(); }

private:
    struct WorldPoint {
        float x;
        float y;
    };
    static constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
    static constexpr WorldPoint kNoPoint{kNoNumber, kNoNumber}; // not equal to any

    CPixelPainter* m_pPainter = nullptr;
    PixelRect m_Pixels;
    WorldRect m_Full;
    WorldRect m_Visible;
    float m_fZoom = 1.0F;
    bool m_bCanZoomIn = true;
    bool m_bCanZoomOut = false;
    std::vector<SCREENRECT> m_ScreenRects;
    // Of the frame that is being drawn.
    CMapping m_Mapping;
    int m_nPenX = 0;
    int m_nPenY = 0;
    WorldPoint m_Pen = kNoPoint; // where the pen was put; kNoPoint when the mapping is another one since
    int m_nLines = 0;
};

} // namespace Tracelyn
