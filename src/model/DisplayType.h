// Where a group or a data set is shown. The four values are compared literally; they are no bit mask.
#pragma once

#include <cstdint>

namespace Tracelyn {

enum class DisplayType : int32_t { None = 0, Graph = 1, Console = 2, Both = 3 };

constexpr bool IsShownInGraph(DisplayType type) {
    return type == DisplayType::Graph || type == DisplayType::Both;
}

constexpr bool IsShownInConsole(DisplayType type) {
    return type == DisplayType::Console || type == DisplayType::Both;
}

} // namespace Tracelyn
