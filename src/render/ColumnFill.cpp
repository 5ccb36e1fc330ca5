#include "render/ColumnFill.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace Tracelyn {

namespace {

constexpr int64_t kLayersAtOnce = CColumnStrip::kMostLayers;
// More are not begun before these have ended: each has a hundred kilobytes and more.
constexpr size_t kMostStrips = 64;
// For each piece of the clip all runs are looked at again.
constexpr int kMostPieces = 8;
constexpr int kLargest = std::numeric_limits<int16_t>::max();

// The columns of all runs that are filled in one pass, about: more would take much memory.
constexpr int64_t kColumnsAtOnce = 1 << 19;

} // namespace

bool CColumnFill::IsWorthIt(const PixelGrid& grid, std::span<const RunLayer> layers) {
    constexpr int64_t kFewestPixels = 1 << 16;
    // Of a frame for a cursor step the clip is some columns; the runs reach far beyond it.
    const int64_t inClip =
        std::accumulate(grid.clip.begin(), grid.clip.end(), int64_t{0}, [](int64_t sum, const QRect& piece) {
            return sum + int64_t{piece.width()} * piece.height();
        });
    if (grid.clip.rectCount() > kMostPieces || inClip < kFewestPixels)
        return false;
    // On average. A column of a run costs as much as filling some rows of it.
    constexpr int64_t kFewestRows = 4;
    // Of the pixels around, that may be looked at for each that is filled.
    constexpr int64_t kLargestShare = 8;
    int64_t pixels = 0;
    int64_t columns = 0;
    PixelRect around{kLargest, kLargest, -kLargest, -kLargest};
    for (const RunLayer& layer : layers) {
        for (const PixelRect& run : layer.runs) {
            pixels += int64_t{run.GetWidth()} * run.GetHeight();
            columns += run.GetWidth();
            around.left = std::min(around.left, run.left);
            around.top = std::min(around.top, run.top);
            around.right = std::max(around.right, run.right);
            around.bottom = std::max(around.bottom, run.bottom);
        }
    }
    const int64_t passes = 1 + std::ssize(layers) / kLayersAtOnce + columns / kColumnsAtOnce;
    return pixels >= kFewestPixels && columns * kFewestRows <= pixels &&
           int64_t{around.GetWidth()} * around.GetHeight() * passes <= pixels * kLargestShare;
}

void CColumnFill::Begin(const PixelGrid& grid, std::span<const RunLayer> layers,
                        support::CBackgroundTasks& tasks) {
    if (m_Begun.intersects(grid.clip) || m_nBegun >= kMostStrips)
        Finish(tasks);
    m_Begun += grid.clip;
    for (const QRect& piece : grid.clip) {
        std::vector<RunLayer> pass;
        int64_t columns = 0;
        const auto beginPass = [&] {
            BeginOnePass(grid, piece, pass, tasks);
            pass.clear();
            columns = 0;
        };
        for (const RunLayer& layer : layers) {
            for (auto left = layer.runs; !left.empty();) {
                if (std::ssize(pass) == kLayersAtOnce || columns >= kColumnsAtOnce) {
                    beginPass();
                    Finish(tasks); // The next pass lies over this one.
                    m_Begun = grid.clip;
                }
                size_t count = 0;
                while (count < left.size() && columns < kColumnsAtOnce)
                    columns += int64_t{left[count++].GetWidth()} * grid.scale;
                pass.push_back({layer.color, left.first(count)});
                left = left.subspan(count);
            }
        }
        beginPass();
    }
}

void CColumnFill::Finish(support::CBackgroundTasks& tasks) {
    m_Begun = QRegion();
    m_nBegun = 0;
    tasks.Finish();
}

void CColumnFill::BeginOnePass(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers,
                               support::CBackgroundTasks& tasks) {
    m_Colors.clear();
    for (const RunLayer& layer : layers)
        m_Colors.push_back(layer.color);
    const int strips = (clip.width() + CColumnStrip::kMostColumns - 1) / CColumnStrip::kMostColumns;
    m_nStripColumns = (clip.width() + strips - 1) / strips;
    m_nStrip = 0;
    m_Strips.clear();
    uint32_t* const first = grid.first + clip.y() * grid.perLine + clip.x();
    for (int x = 0; x < clip.width(); x += m_nStripColumns) {
        if (m_nBegun == m_AllStrips.size())
            m_AllStrips.push_back(std::make_unique<CColumnStrip>());
        m_Strips.push_back(m_AllStrips[m_nBegun++].get());
        m_Strips.back()->Begin({first + x, grid.perLine,
                                static_cast<size_t>(std::min(clip.width() - x, m_nStripColumns)),
                                static_cast<size_t>(clip.height()), grid.isLarge},
                               m_Colors);
    }
    AddRuns(grid, clip, layers);
    for (CColumnStrip* const strip : m_Strips)
        tasks.Add([strip] { strip->Fill(); });
}

void CColumnFill::AddRuns(const PixelGrid& grid, const QRect& clip, std::span<const RunLayer> layers) {
    const QPoint origin = grid.origin - clip.topLeft();
    for (size_t layer = 0; layer < layers.size(); ++layer) {
        for (const PixelRect& run : layers[layer].runs) {
            AddRun({std::max(run.left * grid.scale + origin.x(), 0),
                    std::max(run.top * grid.scale + origin.y(), 0),
                    std::min(run.right * grid.scale + origin.x(), clip.width()),
                    std::min(run.bottom * grid.scale + origin.y(), clip.height())},
                   layer);
        }
    }
}

// Cuts the run at the strips' edges. Most runs are in the strip of the one before.
void CColumnFill::AddRun(const PixelRect& pixels, size_t layer) {
    if (pixels.top >= pixels.bottom)
        return;
    for (int x = pixels.left; x < pixels.right;) {
        int left = m_nStrip * m_nStripColumns;
        if (x < left || x >= left + m_nStripColumns) {
            m_nStrip = x / m_nStripColumns;
            left = m_nStrip * m_nStripColumns;
        }
        const int right = std::min(pixels.right, left + m_nStripColumns);
        m_Strips[static_cast<size_t>(m_nStrip)]->Add({x - left, pixels.top, right - left, pixels.bottom},
                                                     layer);
        x = right;
    }
}

} // namespace Tracelyn
