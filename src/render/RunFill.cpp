#include "render/RunFill.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <numeric>

namespace Tracelyn {

namespace {

// A tall picture is filled in strips of so many rows, because the rows of one strip stay in the processor's
// cache while all columns go through them.
constexpr int kStrip = 1024;
// So many columns side by side are filled together: a row of eight pixels costs as much as one of a single
// pixel.
constexpr size_t kColumnsTogether = 8;
// Columns are cut into rows only when they are at least this high on average.
constexpr int kFewestRows = 64;
// Fewer runs are filled as they come; a cursor step draws that few.
constexpr size_t kFewestToSort = 32;

int Bottom(const QRect& rect) {
    return rect.y() + rect.height();
}

// The first runs, as far as they are columns side by side from left to right; at least one run.
std::span<const PixelRect> FirstNeighbours(std::span<const PixelRect> runs) {
    const size_t most = std::min(runs.size(), kColumnsTogether);
    size_t count = 1;
    while (count < most && runs[count].GetWidth() == 1 && runs[count].left == runs[count - 1].left + 1)
        ++count;
    return runs.first(runs[0].GetWidth() == 1 ? count : 1);
}

bool AreHigh(std::span<const PixelRect> columns) {
    const int rows = std::accumulate(columns.begin(), columns.end(), 0, [](int sum, const PixelRect& column) {
        return sum + column.GetHeight();
    });
    return rows >= kFewestRows * static_cast<int>(columns.size());
}

} // namespace

CRunFill::CRunFill() {
    // The ends of n columns leave 2n - 1 stretches of rows between them, and a stretch breaks into at most n
    // / 2 pieces, when every second column is missing from it.
    constexpr size_t kMostOfGroup = (2 * kColumnsTogether - 1) * (kColumnsTogether / 2);
    constexpr size_t kMost = kRunsAtOnce / kColumnsTogether * kMostOfGroup;
    m_Pieces.reserve(kMost);
    m_Strip.reserve(kMost);
}

void CRunFill::Fill(QPainter& painter, std::span<const PixelRect> runs) {
    painter.setPen(Qt::NoPen);
    m_Pieces.clear();
    if (runs.size() < kFewestToSort) {
        std::ranges::transform(runs, std::back_inserter(m_Pieces), &PixelRect::ToQRect);
        painter.drawRects(m_Pieces.data(), static_cast<int>(m_Pieces.size()));
        return;
    }
    int top = std::numeric_limits<int>::max();
    int bottom = std::numeric_limits<int>::min();
    for (const PixelRect& run : runs) {
        top = std::min(top, run.top);
        bottom = std::max(bottom, run.bottom);
    }
    while (!runs.empty()) {
        const auto columns = FirstNeighbours(runs);
        if (columns.size() > 1 && AreHigh(columns))
            AddPieces(columns);
        else
            std::ranges::transform(columns, std::back_inserter(m_Pieces), &PixelRect::ToQRect);
        runs = runs.subspan(columns.size());
    }
    for (; top < bottom; top += kStrip)
        FillStrip(painter, top);
}

// Cuts the columns at all their ends: between two of those every column is there as a whole or not at all.
void CRunFill::AddPieces(std::span<const PixelRect> columns) {
    std::array<int, 2 * kColumnsTogether> ends;
    size_t count = 0;
    for (const PixelRect& column : columns) {
        ends[count++] = column.top;
        ends[count++] = column.bottom;
    }
    const auto sorted = std::span(ends).first(count);
    std::ranges::sort(sorted);
    for (size_t i = 1; i < count; ++i)
        AddRows(columns, sorted[i - 1], sorted[i]);
}

void CRunFill::AddRows(std::span<const PixelRect> columns, int top, int bottom) {
    if (top == bottom)
        return;
    const auto isThere = [=](const PixelRect& column) {
        return column.top <= top && bottom <= column.bottom;
    };
    auto from = std::ranges::find_if(columns, isThere);
    while (from != columns.end()) {
        const auto to = std::find_if_not(from, columns.end(), isThere);
        m_Pieces.emplace_back(from->left, top, static_cast<int>(to - from), bottom - top);
        from = std::find_if(to, columns.end(), isThere);
    }
}

void CRunFill::FillStrip(QPainter& painter, int top) {
    m_Strip.clear();
    for (const QRect& piece : m_Pieces) {
        const int from = std::max(piece.y(), top);
        const int to = std::min(Bottom(piece), top + kStrip);
        if (from < to)
            m_Strip.emplace_back(piece.x(), from, piece.width(), to - from);
    }
    painter.drawRects(m_Strip.data(), static_cast<int>(m_Strip.size()));
}

} // namespace Tracelyn
