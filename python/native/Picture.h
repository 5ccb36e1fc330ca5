// The program's picture of a recording for Python.
#pragma once

#include "native/LoadedRecording.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tracelyn {

// The bytes of a PNG file, the same as the tool's render writes with these options, which Python has checked:
// the size is allowed, `scroll` is 0 or more and `console` is one of the tool's words. Raises ValueError when
// the recording has no such group or cannot be compared with the other one. The first call makes the
// process's QGuiApplication, without a display, unless there is one.
pybind11::bytes DrawPicture(CLoadedRecording& recording, std::pair<int, int> size, bool dark,
                            std::optional<int> cursor, std::optional<int> fixedCursor,
                            std::optional<float> zoom, std::optional<int> scroll,
                            const std::optional<std::string>& console,
                            const std::vector<std::string>& toggledGroups, bool everyEvent,
                            const CLoadedRecording* behind, const std::optional<std::string>& align);

} // namespace Tracelyn
