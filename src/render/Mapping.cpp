#include "render/Mapping.h"

namespace Tracelyn {

namespace {

// The width of the world comes as a double: that of all floats is no float.
float ScaleOf(int pixels, double world) {
    return world == 0.0 ? 0.0F : static_cast<float>(pixels / world);
}

} // namespace

QRegion Widened(const QRegion& region, int pixels) {
    QRegion widened;
    for (const QRect& rect : region)
        widened += rect.adjusted(-pixels, -pixels, pixels, pixels);
    return widened;
}

int TruncateToInt(double value) {
    constexpr double kLimit = std::numeric_limits<int>::max();
    return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -kLimit, kLimit));
}

CMapping::CMapping(const PixelRect& pixels, const WorldRect& world)
    : m_Pixels(pixels), m_World(world), m_fScaleX(ScaleOf(pixels.GetWidth(), double{world.x2} - world.x1)),
      m_fScaleY(ScaleOf(pixels.GetHeight(), double{world.y2} - world.y1)) {}

double CMapping::PixelToWorldX(int px) const {
    const int width = m_Pixels.GetWidth();
    const double worldWidth = double{m_World.x2} - m_World.x1;
    return width == 0 ? m_World.x1 : double(px) / width * worldWidth + m_World.x1;
}

int CMapping::PixelToIndex(int px) const {
    return TruncateToInt(PixelToWorldX(px) + 0.5);
}

int CMapping::GetSamplesPerPixel() const {
    return std::max(1, TruncateToInt((PixelToWorldX(2) + 0.5) - (PixelToWorldX(1) + 0.5)));
}

} // namespace Tracelyn
