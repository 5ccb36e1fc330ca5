// Counts line feeds as fast as memory is read.
#pragma once

#include <cstdint>
#include <string_view>

namespace support {

int64_t CountLineFeeds(std::string_view text);

} // namespace support
