#include "render/ColumnFill.h"

#include "support/Parallel.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <numeric>

namespace Tracelyn {

namespace {

// What is known of them stays in the processor's own memory while all rows go through them.
constexpr int kMostStripColumns = 1024;
// So many are filled in one pass: each has a bit in a word.
constexpr int64_t kLayersAtOnce = 32;
// A clip of more pieces is left to the painter.
constexpr int kMostPieces = 8;
constexpr int kLargest = std::numeric_limits<int16_t>::max();

// The columns of all runs that are filled in one pass, about: more would take much memory.
constexpr int64_t kColumnsAtOnce = 1 << 19;

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
    // On average. A column of a run costs as much as filling some rows of it.
    constexpr int64_t kFewestRows = 4;
    // Of the pixels around, that may be looked at for each that is filled.
    constexpr int64_t kLargestShare = 8;
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
    const int64_t passes = 1 + std::ssize(layers) / kLayersAtOnce + columns / kColumnsAtOnce;
    return pixels >= kFewestPixels && columns * kFewestRows <= pixels &&
           int64_t{around.GetWidth()} * around.GetHeight() * passes <= pixels * kLargestShare;
}

// Goes down the rows of a strip and knows what each column shows.
class CColumnFill::CSweep {
public:
    CSweep(std::span<const RunLayer> layers, const Strip& ends, int height)
        : m_Rows(size_t(height) + 2), m_Runs(layers.size() * kMostStripColumns) {
        for (size_t layer = 0; layer < layers.size(); ++layer)
            m_Colors[layer + 1] = layers[layer].color;
        SortByRow(ends);
    }

    // The first columns of the strip, from the row `first` points to downwards.
    void Fill(uint32_t* first, ptrdiff_t perLine, size_t columns) {
        for (size_t y = 0; y + 2 < m_Rows.size(); ++y) {
            for (const End& end : std::span(m_Ends).subspan(m_Rows[y], m_Rows[y + 1] - m_Rows[y]))
                Pass(end);
            uint32_t* const row = first + static_cast<ptrdiff_t>(y) * perLine;
            const uint32_t* const shown = m_Shown.data();
            if (m_nCovered == columns) {
                std::copy_n(shown, columns, row);
            } else if (m_nCovered > 0) {
                for (size_t x = 0; x < columns; ++x)
                    row[x] = shown[x] != 0 ? shown[x] : row[x];
            }
        }
    }

private:
    void SortByRow(const Strip& ends) {
        for (const End& end : ends)
            ++m_Rows[end.y + size_t{1}];
        std::partial_sum(m_Rows.begin(), m_Rows.end(), m_Rows.begin());
        m_Ends.resize(ends.size());
        std::vector<uint32_t> next(m_Rows);
        for (const End& end : ends)
            m_Ends[next[end.y]++] = end;
    }

    void Pass(const End& end) {
        uint16_t& runs = m_Runs.data()[end.layer * kMostStripColumns + end.column];
        const bool changes = end.begins ? runs++ == 0 : --runs == 0;
        if (!changes)
            return;
        uint32_t& layers = m_Layers.data()[end.column];
        const bool wasCovered = layers != 0;
        layers ^= uint32_t{1} << end.layer;
        m_Shown.data()[end.column] = m_Colors.data()[std::bit_width(layers)];
        m_nCovered += size_t{layers != 0} - size_t{wasCovered};
    }

    std::vector<End> m_Ends;
    std::vector<uint32_t> m_Rows;                       // where the ends of each row begin
    std::array<uint32_t, kLayersAtOnce + 1> m_Colors{}; // of no layer, 0, and of all layers
    std::array<uint32_t, kMostStripColumns> m_Shown{};  // the colour of the highest layer of each column
    std::array<uint32_t, kMostStripColumns> m_Layers{}; // those that cover each column, a bit each
    std::vector<uint16_t> m_Runs;                       // of each layer that cover each column
    size_t m_nCovered = 0;                              // columns
};

void CColumnFill::Fill(const PixelGrid& grid, std::span<const RunLayer> layers) {
    for (const QRect& piece : grid.clip) {
        m_Clip = piece;
        std::vector<RunLayer> pass;
        int64_t columns = 0;
        for (const RunLayer& layer : layers) {
            for (auto left = layer.runs; !left.empty();) {
                if (std::ssize(pass) == kLayersAtOnce || columns >= kColumnsAtOnce) {
                    FillInOnePass(grid, pass);
                    pass.clear();
                    columns = 0;
                }
                size_t count = 0;
                while (count < left.size() && columns < kColumnsAtOnce)
                    columns += int64_t{left[count++].width()} * grid.scale;
                pass.push_back({layer.color, left.first(count)});
                left = left.subspan(count);
            }
        }
        FillInOnePass(grid, pass);
    }
}

void CColumnFill::FillInOnePass(const PixelGrid& grid, std::span<const RunLayer> layers) {
    Collect(grid, layers);
    support::ForEachParallel(std::ssize(m_Strips), [&](int /*worker*/, int64_t strip) {
        const Strip& ends = m_Strips[static_cast<size_t>(strip)];
        if (ends.empty())
            return true;
        const int x = static_cast<int>(strip) * m_nStripColumns;
        uint32_t* const first = grid.first + m_Clip.y() * grid.perLine + m_Clip.x() + x;
        const auto columns = static_cast<size_t>(std::min(m_Clip.width() - x, m_nStripColumns));
        CSweep(layers, ends, m_Clip.height()).Fill(first, grid.perLine, columns);
        return true;
    });
}

void CColumnFill::Collect(const PixelGrid& grid, std::span<const RunLayer> layers) {
    const int strips = (m_Clip.width() + kMostStripColumns - 1) / kMostStripColumns;
    m_nStripColumns = (m_Clip.width() + strips - 1) / strips;
    m_Strips.resize(static_cast<size_t>(strips));
    for (Strip& strip : m_Strips)
        strip.clear();
    for (size_t layer = 0; layer < layers.size(); ++layer) {
        for (const QRect& run : layers[layer].runs) {
            const QPoint at = run.topLeft() * grid.scale + grid.origin - m_Clip.topLeft();
            AddEnds({std::max(at.x(), 0), std::max(at.y(), 0),
                     std::min(at.x() + run.width() * grid.scale, m_Clip.width()),
                     std::min(at.y() + run.height() * grid.scale, m_Clip.height())},
                    static_cast<uint16_t>(layer));
        }
    }
}

void CColumnFill::AddEnds(const PixelRect& pixels, uint16_t layer) {
    if (pixels.top >= pixels.bottom)
        return;
    for (int x = pixels.left; x < pixels.right; ++x) {
        Strip& strip = m_Strips[static_cast<size_t>(x / m_nStripColumns)];
        const auto column = static_cast<uint16_t>(x % m_nStripColumns);
        strip.push_back({static_cast<uint16_t>(pixels.top), column, layer, true});
        strip.push_back({static_cast<uint16_t>(pixels.bottom), column, layer, false});
    }
}

} // namespace Tracelyn
