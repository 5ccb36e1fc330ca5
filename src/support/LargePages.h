// A hint to the system about memory that is filled soon.
#pragma once

#include <cstddef>
#include <span>

namespace support {

// The system may back the memory with large pages, which it hands out faster. Without any, or where the
// system does not offer them, nothing happens.
void PreferLargePages(std::span<std::byte> memory);

} // namespace support
