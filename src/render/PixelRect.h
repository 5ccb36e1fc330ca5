// A rectangle of pixels; the right and bottom edges are exclusive.
#pragma once

#include <QRect>

namespace Tracelyn {

struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    static PixelRect From(const QRect& rect) {
        return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
    }
    QRect ToQRect() const { return {left, top, right - left, bottom - top}; }

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const PixelRect&) const = default;
};

} // namespace Tracelyn
