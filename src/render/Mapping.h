// Rectangles of pixels and of the world, and how one is mapped to the other.
#pragma once

#include "support/Limits.h"

#include <QRect>
#include <QRegion>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tracelyn {

// The right and bottom edges are exclusive.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    static PixelRect From(const QRect& rect) {
        return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
    }
    QRect ToQRect() const { return {left, top, right - left, bottom - top}; }

    int GetWidth() const { return right - left; }
    int GetHeight() const { return bottom - top; }
    // What lies in the other one, too; an edge beyond its opposite when nothing does.
    PixelRect CutTo(const PixelRect& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    bool operator==(const PixelRect&) const = default;
};

// Every rectangle of the region with so many pixels more on each side.
QRegion Widened(const QRegion& region, int pixels);

// For curves and cursors x is a sample index, for headers it is a pixel; y is in the unit of what is drawn.
struct WorldRect {
    float x1 = 0.0F;
    float y1 = 0.0F;
    float x2 = 0.0F;
    float y2 = 0.0F;

    bool operator==(const WorldRect&) const = default;
};

// A pixel rectangle that shows a world rectangle, x1 at its left edge and y1 at its top.
class CMapping {
public:
    // The pixel of a world coordinate that is not a number.
    static constexpr int kNoPixel = std::numeric_limits<int>::min();

    CMapping() = default;
    // A world rectangle without width or height is shown at the left or top edge.
    CMapping(const PixelRect& pixels, const WorldRect& world);

    // The pixel of a world coordinate, truncated toward zero. Far outside the pixel rectangle it saturates.
    int WorldToPixelX(float x) const { return ToPixel((x - m_World.x1) * m_fScaleX, m_Pixels.left); }
    int WorldToPixelY(float y) const { return ToPixel((y - m_World.y1) * m_fScaleY, m_Pixels.top); }
    // The world coordinate of a pixel column. It is counted from the left edge of the client area, not from
    // that of the pixel rectangle; plots start at the edge of the client area.
    double PixelToWorldX(int px) const;
    // The sample nearest to a pixel column.
    int PixelToIndex(int px) const;
    // Samples between one pixel column and the next, at least 1.
    int GetSamplesPerPixel() const;

private:
    // In the header, for it is called for every line.
    static int ToPixel(float scaled, int origin) {
        using support::limits::kMaxPixel;
        return std::isnan(scaled) ? kNoPixel
                                  : static_cast<int>(std::clamp(scaled, -kMaxPixel, kMaxPixel)) + origin;
    }

    PixelRect m_Pixels;
    WorldRect m_World;
    float m_fScaleX = 0.0F;
    float m_fScaleY = 0.0F;
};

// A value cut to its whole number. What is not a number becomes 0, what no int holds the nearest that one
// does.
int TruncateToInt(double value);

} // namespace Tracelyn
