// Figures of recordings for Python, the same as those of the tool's stats and compare.
#pragma once

#include "native/LoadedRecording.h"

#include <map>
#include <optional>
#include <string>

namespace Tracelyn {

// A dict for each shown signal. Raises ValueError when the recording does not have these samples; they are
// 0 or more, and `to` is not below `from`.
pybind11::list StatisticsOfRecording(const CLoadedRecording& recording, std::optional<int> from,
                                     std::optional<int> to, const std::optional<std::string>& whileSignal);

// (a dict for each common signal, texts to warn about). Raises ValueError when the recordings cannot be
// compared so.
pybind11::tuple CompareRecordings(const CLoadedRecording& good, const CLoadedRecording& other,
                                  const std::optional<std::string>& align,
                                  const std::map<std::string, double>& tolerances);

// The sample of the recording that is laid on another. Throws std::invalid_argument, which becomes a
// ValueError, when it has none. The caller holds the recording's mutex.
int ZeroOf(const CLoadedRecording& recording, const std::optional<QString>& alignSignal);

} // namespace Tracelyn
