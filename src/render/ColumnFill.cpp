#include "render/ColumnFill.h"

#include "support/Parallel.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <limits>

namespace Tracelyn {

namespace {

constexpr size_t kTogether = 8; // columns
// Their ends stay in the processor's own memory while all rows go through them.
constexpr size_t kStripColumns = 256;
// More sheets cost more than they save.
constexpr size_t kMostSheets = 24;
// A clip of more pieces is left to the painter.
constexpr int kMostPieces = 8;
constexpr int kLargest = std::numeric_limits<int16_t>::max();

// One colour over some pixels of a row.
struct Rows {
    const int16_t* tops;
    const int16_t* bottoms;
    uint32_t color;
};

#ifdef __SSE2__

// Eight pixels of row y, through all layers from the first to the last one.
void FillEight(uint32_t* pixels, int16_t y, std::span<const Rows> layers, size_t column) {
    const __m128i row = _mm_set1_epi16(y);
    auto* const at = reinterpret_cast<__m128i*>(pixels);
    __m128i first = _mm_loadu_si128(at);
    __m128i second = _mm_loadu_si128(at + 1);
    const auto over = [](__m128i below, __m128i color, __m128i mask) {
        return _mm_or_si128(_mm_andnot_si128(mask, below), _mm_and_si128(mask, color));
    };
    for (const Rows& layer : layers) {
        const __m128i tops = _mm_loadu_si128(reinterpret_cast<const __m128i*>(layer.tops + column));
        const __m128i bottoms = _mm_loadu_si128(reinterpret_cast<const __m128i*>(layer.bottoms + column));
        const __m128i covered = _mm_andnot_si128(_mm_cmpgt_epi16(tops, row), _mm_cmpgt_epi16(bottoms, row));
        const __m128i color = _mm_set1_epi32(static_cast<int>(layer.color));
        first = over(first, color, _mm_unpacklo_epi16(covered, covered));
        second = over(second, color, _mm_unpackhi_epi16(covered, covered));
    }
    _mm_storeu_si128(at, first);
    _mm_storeu_si128(at + 1, second);
}

#else

void FillEight(uint32_t* pixels, int16_t y, std::span<const Rows> layers, size_t column) {
    for (const Rows& layer : layers) {
        for (size_t i = 0; i < kTogether; ++i) {
            const bool isCovered = layer.tops[column + i] <= y && y < layer.bottoms[column + i];
            pixels[i] = isCovered ? layer.color : pixels[i];
        }
    }
}

#endif

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
    return PixelGrid{reinterpret_cast<uint32_t*>(image.bits()), image.bytesPerLine() / 4, clip, scale,
                     origin};
}

bool CColumnFill::IsWorthIt(std::span<const RunLayer> layers) {
    constexpr int64_t kFewestPixels = 1 << 16;
    constexpr int64_t kLargestShare =
        8; // of the pixels around, that may be looked at for each that is filled
    int64_t pixels = 0;
    int64_t columns = 0;
    PixelRect around{kLargest, kLargest, -kLargest, -kLargest};
    for (const RunLayer& layer : layers) {
        for (const QRect& run : layer.runs) {
            pixels += int64_t{run.width()} * run.height();
            columns += run.width();
            around.left = std::min(around.left, run.x());
            around.top = std::min(around.top, run.y());
            around.right = std::max(around.right, run.x() + run.width());
            around.bottom = std::max(around.bottom, run.y() + run.height());
        }
    }
    if (pixels < kFewestPixels)
        return false;
    // Every sheet is looked at in every pixel around.
    const int64_t sheets = std::max<int64_t>(std::ssize(layers), columns / around.GetWidth());
    return int64_t{around.GetWidth()} * around.GetHeight() * sheets <= pixels * kLargestShare;
}

bool CColumnFill::Fill(const PixelGrid& grid, std::span<const RunLayer> layers) {
    for (const QRect& piece : grid.clip) {
        m_Clip = piece;
        if (!LayAll(grid, layers))
            return false;
        const auto width = static_cast<size_t>(m_Clip.width());
        const auto strips = static_cast<int64_t>((width + kStripColumns - 1) / kStripColumns);
        support::ForEachParallel(strips, [&](int /*worker*/, int64_t strip) {
            const auto from = static_cast<size_t>(strip) * kStripColumns;
            FillStrip(grid, from, std::min(width, from + kStripColumns));
            return true;
        });
    }
    return true;
}

bool CColumnFill::LayAll(const PixelGrid& grid, std::span<const RunLayer> layers) {
    m_nColumns = (static_cast<size_t>(m_Clip.width()) + kTogether - 1) / kTogether * kTogether;
    m_nSheets = 0;
    for (const RunLayer& layer : layers) {
        const size_t firstSheet = m_nSheets;
        for (const QRect& run : layer.runs) {
            const QPoint at = run.topLeft() * grid.scale + grid.origin - m_Clip.topLeft();
            Lay({std::max(at.x(), 0), std::max(at.y(), 0),
                 std::min(at.x() + run.width() * grid.scale, m_Clip.width()),
                 std::min(at.y() + run.height() * grid.scale, m_Clip.height())},
                firstSheet, layer.color);
            if (m_nSheets > kMostSheets)
                return false;
        }
    }
    return true;
}

CColumnFill::Sheet& CColumnFill::AddSheet(uint32_t color) {
    if (m_nSheets == m_Sheets.size())
        m_Sheets.emplace_back();
    Sheet& sheet = m_Sheets[m_nSheets++];
    sheet.color = color;
    sheet.tops.assign(m_nColumns, 0);
    sheet.bottoms.assign(m_nColumns, 0);
    return sheet;
}

// Puts the pixels into the first sheet of the colour where each column is free or has rows that they go on
// from.
void CColumnFill::Lay(const PixelRect& pixels, size_t firstSheet, uint32_t color) {
    if (pixels.top >= pixels.bottom)
        return;
    const auto top = static_cast<int16_t>(pixels.top);
    const auto bottom = static_cast<int16_t>(pixels.bottom);
    for (int x = pixels.left; x < pixels.right; ++x) {
        const auto column = static_cast<size_t>(x);
        const auto takes = [&](const Sheet& sheet) {
            return sheet.bottoms[column] == 0 ||
                   (top <= sheet.bottoms[column] && sheet.tops[column] <= bottom);
        };
        size_t at = firstSheet;
        while (at < m_nSheets && !takes(m_Sheets[at]))
            ++at;
        Sheet& sheet = at < m_nSheets ? m_Sheets[at] : AddSheet(color);
        const bool isFree = sheet.bottoms[column] == 0;
        sheet.tops[column] = isFree ? top : std::min(top, sheet.tops[column]);
        sheet.bottoms[column] = isFree ? bottom : std::max(bottom, sheet.bottoms[column]);
    }
}

void CColumnFill::FillStrip(const PixelGrid& grid, size_t from, size_t to) const {
    std::vector<Rows> layers;
    int top = kLargest;
    int bottom = 0;
    for (const Sheet& sheet : std::span(m_Sheets).first(m_nSheets)) {
        int lowest = 0;
        for (size_t column = from; column < to; ++column) {
            lowest = std::max<int>(lowest, sheet.bottoms[column]);
            if (sheet.bottoms[column] != 0)
                top = std::min<int>(top, sheet.tops[column]);
        }
        if (lowest != 0)
            layers.push_back({sheet.tops.data(), sheet.bottoms.data(), sheet.color});
        bottom = std::max(bottom, lowest);
    }
    for (int y = top; y < bottom; ++y) {
        uint32_t* const row = grid.first + (m_Clip.y() + y) * grid.perLine + m_Clip.x();
        size_t column = from;
        for (; column + kTogether <= to; column += kTogether)
            FillEight(row + column, static_cast<int16_t>(y), layers, column);
        for (; column < to; ++column) {
            for (const Rows& layer : layers) {
                if (layer.tops[column] <= y && y < layer.bottoms[column])
                    row[column] = layer.color;
            }
        }
    }
}

} // namespace Tracelyn
