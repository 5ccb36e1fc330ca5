// The pixels of a straight line as runs along its longer direction, each computed from the end points alone.
#pragma once

#include "render/Mapping.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace Tracelyn {

// The runs of a line that is higher than wide and whose ends lie in one column or in two side by side, as
// those of dense curves do: what ForEachLineRun gives, without a division.
template <class Emit>
void ForEachColumnRun(int x1, int y1, int x2, int y2, const PixelRect& clip, Emit emit) {
    // No branch on the direction, which nothing can guess for noise.
    const int isUp = y1 > y2 ? 1 : 0;
    const int steps = std::abs(y2 - y1);
    // Those in the column x1; of an odd number the middle one, too.
    const int first = x1 == x2 ? steps : (steps + 1) / 2;
    // An upward line leaves out its last pixel, too, so that its rows lie one below the end points.
    const int begin = y1 + isUp;
    const int end = y2 + isUp;
    const int middle = begin + (1 - 2 * isUp) * first;
    const auto emitRows = [&](int x, int from, int to) {
        const int upper = from + ((to - from) & -isUp); // the smaller one; std::min became a branch
        const int lower = from + to - upper;
        const int top = std::max(upper, clip.top);
        const int bottom = std::min(lower, clip.bottom);
        if (x >= clip.left && x < clip.right && top < bottom)
            emit(x, top, 1, bottom - top);
    };
    emitRows(x1, begin, middle);
    emitRows(x2, middle, end);
}

// Calls emit(x, y, width, height) for the runs of the line that touch the clip. Step k of the n steps along
// the longer direction lies at round(k * shorter / n) across it; the end point is left out. Coordinates below
// 2^29.
template <class Emit>
void ForEachLineRun(int x1, int y1, int x2, int y2, const PixelRect& clip, Emit emit) {
    const bool steep = std::abs(int64_t{y2} - y1) > std::abs(int64_t{x2} - x1);
    if (steep && std::abs(x2 - x1) <= 1) {
        ForEachColumnRun(x1, y1, x2, y2, clip, emit);
        return;
    }
    if (!steep && std::abs(x2 - x1) == 1) { // its end point is left out
        if (x1 >= clip.left && x1 < clip.right && y1 >= clip.top && y1 < clip.bottom)
            emit(x1, y1, 1, 1);
        return;
    }
    const int64_t along = steep ? y1 : x1;
    const int64_t across = steep ? x1 : y1;
    const int64_t alongSpan = steep ? int64_t{y2} - y1 : int64_t{x2} - x1;
    const int64_t acrossSpan = steep ? int64_t{x2} - x1 : int64_t{y2} - y1;
    const int64_t steps = std::abs(alongSpan);
    const int64_t rows = std::abs(acrossSpan);
    const int64_t alongSign = alongSpan < 0 ? -1 : 1;
    const int64_t acrossSign = acrossSpan < 0 ? -1 : 1;

    // The rows of runs that the clip shows.
    const int64_t clipFrom = steep ? clip.left : clip.top;
    const int64_t clipTo = (steep ? clip.right : clip.bottom) - int64_t{1};
    const int64_t rowA = (clipFrom - across) * acrossSign;
    const int64_t rowB = (clipTo - across) * acrossSign;
    const int64_t firstRow = std::max<int64_t>(0, std::min(rowA, rowB));
    const int64_t lastRow = std::min(rows, std::max(rowA, rowB));
    if (steps == 0 || firstRow > lastRow)
        return;

    // First step of a row: the smallest k with k * rows / steps >= row - 1/2.
    const auto firstStep = [=](int64_t row) {
        return row <= 0 ? 0 : ((2 * row - 1) * steps + 2 * rows - 1) / (2 * rows);
    };
    const int64_t clipAlong = steep ? clip.top : clip.left;
    const int64_t clipAlongEnd = steep ? clip.bottom : clip.right;
    int64_t stepFrom = firstStep(firstRow);
    for (int64_t row = firstRow; row <= lastRow; ++row) {
        const int64_t stepTo = row == rows ? steps : std::min(steps, firstStep(row + 1));
        const int64_t pixelA = along + alongSign * stepFrom;
        const int64_t pixelB = along + alongSign * (stepTo - 1);
        const int64_t from = std::max(std::min(pixelA, pixelB), clipAlong);
        const int64_t to = std::min(std::max(pixelA, pixelB) + 1, clipAlongEnd);
        const bool isEmpty = stepFrom >= stepTo || from >= to;
        stepFrom = stepTo;
        if (isEmpty)
            continue;
        const auto position = static_cast<int>(across + acrossSign * row);
        const auto start = static_cast<int>(from);
        const auto length = static_cast<int>(to - from);
        if (steep)
            emit(position, start, 1, length);
        else
            emit(start, position, length, 1);
    }
}

} // namespace Tracelyn
