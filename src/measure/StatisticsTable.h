// Statistics as lines of a table.
#pragma once

#include "measure/Signals.h"
#include "measure/Statistics.h"
#include "measure/Table.h"

#include <array>

namespace Tracelyn {

inline constexpr std::array kStatisticsColumns{
    "file",  "group",     "signal",     "unit",       "from",        "to",     "count",
    "first", "last",      "difference", "min",        "minAt",       "max",    "maxAt",
    "mean",  "deviation", "slope",      "switchedOn", "switchedOff", "timeOn", "share"};

// A cell for each of those columns. Only on/off signals have the last four.
TableLine StatisticsLine(const QString& file, const ShownSignal& signal, const Statistics& figures);

} // namespace Tracelyn
