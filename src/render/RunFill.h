// Fills the pixels of lines quickly.
#pragma once

#include <QRect>

#include <cstddef>
#include <span>

class QPainter;

// Runs that are filled at a time.
inline constexpr size_t kRunsAtOnce = 512;

// Fills at most kRunsAtOnce rectangles with the painter's brush, whatever its pen. They may overlap and come
// in any order; the runs of steep lines, columns one pixel wide, are what it is made for.
void FillRuns(QPainter& painter, std::span<const QRect> runs);
