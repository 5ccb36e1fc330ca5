// A rectangle of the world: x in sample indices, y in whatever the mapping at hand says.
#pragma once

#include "render/PixelRect.h"

namespace Tracelyn {

struct WorldRect {
    float x1 = 0.0F;
    float y1 = 0.0F;
    float x2 = 0.0F;
    float y2 = 0.0F;

    static WorldRect From(const PixelRect& rect) {
        return {static_cast<float>(rect.left), static_cast<float>(rect.top), static_cast<float>(rect.right),
                static_cast<float>(rect.bottom)};
    }
    bool operator==(const WorldRect&) const = default;
};

} // namespace Tracelyn
