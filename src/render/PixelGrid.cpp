#include "render/PixelGrid.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <limits>

namespace Tracelyn {

namespace {

// A clip of more pieces is left to the painter.
constexpr int kMostPieces = 64;
constexpr int kLargest = std::numeric_limits<int16_t>::max();
// More than caches keep beside other things. A picture of 1920x1080 pixels is smaller.
constexpr qsizetype kCachedBytes = qsizetype{8} << 20;

void FillRect(const PixelGrid& grid, const PixelRect& pixels, QRgb color) {
    const int width = pixels.GetWidth();
    uint32_t* row = grid.first + pixels.top * grid.perLine + pixels.left;
    for (int y = pixels.top; y < pixels.bottom; ++y, row += grid.perLine)
        std::fill_n(row, width, color);
}

} // namespace

std::optional<PixelGrid> PixelsOf(QPainter& painter) {
    const QPaintEngine* const engine = painter.paintEngine();
    QPaintDevice* const device = engine->type() == QPaintEngine::Raster ? engine->paintDevice() : nullptr;
    if (device == nullptr || device->devType() != QInternal::Image)
        return std::nullopt;
    auto& image = *static_cast<QImage*>(device);
    const bool isKnown =
        image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied;
    const QTransform& transform = painter.deviceTransform();
    const int scale = qRound(transform.m11());
    const QPoint origin(qRound(transform.dx()), qRound(transform.dy()));
    const bool isWhole = scale > 0 && transform == QTransform(scale, 0, 0, scale, origin.x(), origin.y()) &&
                         image.isDetached();
    if (!isKnown || !isWhole || image.width() > kLargest || image.height() > kLargest)
        return std::nullopt;
    QRegion clip(image.rect());
    if (const QRegion ofSystem = engine->systemClip(); !ofSystem.isEmpty())
        clip &= ofSystem;
    if (painter.hasClipping())
        clip &= transform.map(painter.clipRegion());
    if (clip.rectCount() > kMostPieces)
        return std::nullopt;
    return PixelGrid{reinterpret_cast<uint32_t*>(image.bits()), image.bytesPerLine() / 4, clip, scale, origin,
                     image.sizeInBytes() > kCachedBytes};
}

void FillRuns(const PixelGrid& grid, const RunLayer& layer) {
    for (const QRect& piece : grid.clip) {
        const PixelRect clip = PixelRect::From(piece);
        for (const PixelRect& run : layer.runs) {
            const PixelRect pixels{std::max(run.left * grid.scale + grid.origin.x(), clip.left),
                                   std::max(run.top * grid.scale + grid.origin.y(), clip.top),
                                   std::min(run.right * grid.scale + grid.origin.x(), clip.right),
                                   std::min(run.bottom * grid.scale + grid.origin.y(), clip.bottom)};
            if (pixels.left < pixels.right)
                FillRect(grid, pixels, layer.color);
        }
    }
}

} // namespace Tracelyn
