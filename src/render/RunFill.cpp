#include "RunFill.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace {

// Rows of a large picture that are near at hand for a processor; a column goes through one of them at a time.
constexpr int kStrip = 256;
// Fewer common rows are not worth a rectangle of their own.
constexpr int kFewestCommonRows = 16;
// As few runs as a cursor step draws are filled as they come.
constexpr size_t kFewestToSort = 32;

int Bottom(const QRect& rect) {
    return rect.y() + rect.height();
}

QRect Rows(int x, int width, int top, int bottom) {
    return {x, top, width, bottom - top};
}

// Rectangles of one bundle: two runs become at most five.
struct Pieces {
    std::array<QRect, kRunsAtOnce * 5 / 2> rects;
    size_t count = 0;
    int top = std::numeric_limits<int>::max();
    int bottom = std::numeric_limits<int>::min();

    void Add(const QRect& rect) {
        if (rect.height() <= 0)
            return;
        rects[count++] = rect;
        top = std::min(top, rect.y());
        bottom = std::max(bottom, Bottom(rect));
    }

    // A row of two pixels costs as much as one of one: what neighbouring columns have in common is taken
    // together. False when that is little.
    bool AddPair(const QRect& a, const QRect& b) {
        const int commonTop = std::max(a.y(), b.y());
        const int commonBottom = std::min(Bottom(a), Bottom(b));
        if (a.width() != 1 || b.width() != 1 || std::abs(a.x() - b.x()) != 1 ||
            commonBottom - commonTop < kFewestCommonRows)
            return false;
        Add(Rows(std::min(a.x(), b.x()), 2, commonTop, commonBottom));
        for (const QRect& rect : {a, b}) {
            Add(Rows(rect.x(), 1, rect.y(), commonTop));
            Add(Rows(rect.x(), 1, commonBottom, Bottom(rect)));
        }
        return true;
    }
};

} // namespace

void FillRuns(QPainter& painter, std::span<const QRect> runs) {
    painter.setPen(Qt::NoPen);
    if (runs.size() < kFewestToSort) {
        painter.drawRects(runs.data(), static_cast<int>(runs.size()));
        return;
    }
    Pieces pieces;
    while (!runs.empty()) {
        const bool isPair = runs.size() > 1 && pieces.AddPair(runs[0], runs[1]);
        if (!isPair)
            pieces.Add(runs[0]);
        runs = runs.subspan(isPair ? 2 : 1);
    }
    std::array<QRect, pieces.rects.size()> part;
    for (int top = pieces.top; top < pieces.bottom; top += kStrip) {
        size_t count = 0;
        for (const QRect& rect : std::span(pieces.rects).first(pieces.count)) {
            const QRect seen =
                Rows(rect.x(), rect.width(), std::max(rect.y(), top), std::min(Bottom(rect), top + kStrip));
            if (seen.height() > 0)
                part[count++] = seen;
        }
        painter.drawRects(part.data(), static_cast<int>(count));
    }
}
