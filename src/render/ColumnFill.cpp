#include "render/ColumnFill.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace Tracelyn {

namespace {

constexpr int64_t kLayersAtOnce = CColumnStrip::kMostLayers;
// More are not begun before these have ended: each has a hundred kilobytes and more, and so have its runs.
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

void CColumnFill::Begin(const PixelGrid& grid, std::span<const RunLayer> layers, std::vector<PixelRect>& runs,
                        support::CBackgroundTasks& tasks) {
    if (m_Begun.intersects(grid.clip) || m_nStrips >= kMostStrips)
        Finish(tasks);
    m_Begun += grid.clip;
    if (m_nRuns == m_Runs.size())
        m_Runs.emplace_back();
    m_Runs[m_nRuns++].swap(runs);
    for (const QRect& piece : grid.clip) {
        std::vector<RunLayer> pass;
        int64_t columns = 0;
        const auto beginPass = [&] {
            BeginOnePass(grid, piece, std::exchange(pass, {}), tasks);
            columns = 0;
        };
        for (const RunLayer& layer : layers) {
            for (auto left = layer.runs; !left.empty();) {
                if (std::ssize(pass) == kLayersAtOnce || columns >= kColumnsAtOnce) {
                    beginPass();
                    tasks.Finish(); // The next pass lies over this one.
                    m_nStrips = 0;
                    m_Runs.front().swap(m_Runs[m_nRuns - 1]); // Those of this filling are all that is needed.
                    m_nRuns = 1;
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
    m_nStrips = 0;
    m_nRuns = 0;
    tasks.Finish();
}

CColumnStrip& CColumnFill::NextStrip() {
    if (m_nStrips == m_Strips.size())
        m_Strips.push_back(std::make_unique<CColumnStrip>());
    return *m_Strips[m_nStrips++];
}

void CColumnFill::BeginOnePass(const PixelGrid& grid, const QRect& clip, std::vector<RunLayer> layers,
                               support::CBackgroundTasks& tasks) {
    const int count = (clip.width() + CColumnStrip::kMostColumns - 1) / CColumnStrip::kMostColumns;
    const int columns = (clip.width() + count - 1) / count;
    uint32_t* const first = grid.first + clip.y() * grid.perLine + clip.x();
    const auto shared = std::make_shared<const std::vector<RunLayer>>(std::move(layers));
    for (int x = 0; x < clip.width(); x += columns) {
        CColumnStrip& strip = NextStrip();
        const StripPixels pixels{.first = first + x,
                                 .perLine = grid.perLine,
                                 .columns = static_cast<size_t>(std::min(clip.width() - x, columns)),
                                 .rows = static_cast<size_t>(clip.height()),
                                 .isLarge = grid.isLarge};
        const QPoint origin = grid.origin - clip.topLeft() - QPoint(x, 0);
        tasks.Add([&strip, pixels, shared, origin, scale = grid.scale] {
            strip.Begin(pixels);
            for (const RunLayer& layer : *shared)
                strip.Add(layer, scale, origin);
            strip.Fill();
        });
    }
}

} // namespace Tracelyn
