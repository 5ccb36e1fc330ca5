// The mapping between world and pixels, the visible range with its zoom, and the clickable rectangles of a
// frame.
#pragma once

#include "render/PixelRect.h"
#include "render/WorldRect.h"

#include <QString>

#include <limits>
#include <vector>

namespace Tracelyn {

class CPixelPainter;

// A clickable rectangle in pixels; all four bounds are inside it. Its name is a group's name or one of the
// keys below.
struct SCREENRECT {
    int left;
    int top;
    int right;
    int bottom;
    QString name;
};

// The selection underline of a header, and a value cell of the console.
inline const QString kGroupUnderlineRect = QStringLiteral("#Group#");
inline const QString kValueRect = QStringLiteral("#Value#");

inline constexpr float kMaximumZoom = 40.0F;

class CCanvas {
public:
    // What the pixel of a world coordinate that is not a number comes out as.
    static constexpr int kNoPixel = std::numeric_limits<int>::min();

    CCanvas();

    // Full and visible extent become the given rectangle.
    void SetWorld(const WorldRect& world);
    // Shows the given part, moved or widened so that it stays inside the full extent.
    void SetVisible(const WorldRect& visible);
    // What WorldToPixel and PixelToWorld go by from now on. A zero world width or height maps everything to
    // one edge.
    void SetMapping(const PixelRect& pixels, const WorldRect& world);
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

    // Truncated toward zero; far outside they saturate. kNoPixel when the coordinate is not a number.
    int WorldToPixelX(float x) const;
    int WorldToPixelY(float y) const;
    // The pixel is taken from the client's left edge, not from that of the mapping.
    double PixelToWorldX(int px) const;
    // The sample nearest to a pixel column.
    int PixelToIndex(int px) const;
    // Samples between one pixel column and the next, at least 1.
    int SamplesPerPixel() const;

    // Drawing in world coordinates with the painter's pen and brush. Lines leave their end point out; a
    // coordinate that is not a number draws nothing.
    void MoveTo(float x, float y);
    void LineTo(float x, float y);
    void Rectangle(float x1, float y1, float x2, float y2);
    void Triangle(float x1, float y1, float x2, float y2, float x3, float y3);
    void SetPixel(float x, float y);
    void TextOut(float x, float y, const QString& text);
    // LineTo calls since BeginDraw.
    int GetLineCount() const { return m_nLines; }

    // Registers a clickable rectangle given in world coordinates.
    void AddScreenRect(const QString& name, float x1, float y1, float x2, float y2);
    // The first that holds the point, the first of that name; null when there is none. Valid until the next
    // frame.
    const SCREENRECT* HitTest(int x, int y) const;
    const SCREENRECT* FindScreenRect(const QString& name) const;
    void CollectScreenRects(const QString& name, std::vector<SCREENRECT>& out) const;
    void ClearScreenRects() { m_ScreenRects.clear(); }

private:
    CPixelPainter* m_pPainter = nullptr;
    PixelRect m_Pixels;
    WorldRect m_Full;
    WorldRect m_Visible;
    float m_fZoom = 1.0F;
    PixelRect m_MappedPixels;
    WorldRect m_MappedWorld;
    float m_fScaleX = 1.0F;
    float m_fScaleY = 1.0F;
    std::vector<SCREENRECT> m_ScreenRects;
    int m_nLines = 0;
    bool m_bCanZoomIn = true;
    bool m_bCanZoomOut = false;
    int m_nPenX = 0;
    int m_nPenY = 0;
};

} // namespace Tracelyn
