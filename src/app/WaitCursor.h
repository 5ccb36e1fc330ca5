// The mouse pointer's shape for as long as something lasts.
#pragma once

#include <QApplication>
#include <QCursor>

namespace Tracelyn {

template <Qt::CursorShape Shape>
class CScopedCursor {
public:
    CScopedCursor() { QApplication::setOverrideCursor(QCursor(Shape)); }
    CScopedCursor(const CScopedCursor&) = delete;
    CScopedCursor& operator=(const CScopedCursor&) = delete;
    ~CScopedCursor() { QApplication::restoreOverrideCursor(); }
};

using CWaitCursor = CScopedCursor<Qt::WaitCursor>;
// For a box that opens while something waits.
using CArrowCursor = CScopedCursor<Qt::ArrowCursor>;

} // namespace Tracelyn
