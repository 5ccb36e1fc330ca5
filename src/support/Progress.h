// How far a long operation has come.
#pragma once

#include <functional>

namespace support {

// Called now and then with the part that is done, 0 to 1, on the thread that runs the operation. Empty when
// nobody asks.
using Progress = std::function<void(double)>;

// Progress of a step that takes the operation from `from` to `to`. Borrows the whole's.
inline Progress StepOf(const Progress& whole, double from, double to) {
    if (!whole)
        return {};
    return [&whole, from, to](double done) { whole(from + (to - from) * done); };
}

} // namespace support
