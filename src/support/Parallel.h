// Work that is split over all processor cores inside one call.
#pragma once

#include "support/Progress.h"

#include <cstdint>
#include <functional>

namespace support {

// The threads that ForEachParallel uses for that many items, the calling one included: 1 to 8.
int WorkerCount(int64_t items);

// Calls work(worker, item) once for each item from 0 to items - 1, on WorkerCount threads, and returns when
// all have ended. `worker` counts from 0 and tells the threads apart. Items begin in order; once work returns
// false none with a higher number begins. Returns the first item for which it did, `items` when there is
// none: all before it are done. The same when the progress asks to stop: no further item begins, and the
// first that did not begin is returned. An exception ends everything and is thrown on the calling thread,
// which also reports the progress.
int64_t ForEachParallel(int64_t items, const std::function<bool(int worker, int64_t item)>& work,
                        const Progress& progress = {});

} // namespace support
