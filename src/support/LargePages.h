// Memory for large arrays that are filled soon.
#pragma once

#include <cstddef>

namespace support {

// Memory for so many bytes, aligned as that of operator new, which throws when there is none. A large array
// is placed so that the system may back it with large pages, which it hands out faster. Of the system's
// memory an array uses up at most a third more than its size; of its addresses some megabytes more.
[[nodiscard]] void* NewLargeArray(size_t bytes);

// Gives back what NewLargeArray(bytes) returned.
void DeleteLargeArray(void* memory, size_t bytes) noexcept;

} // namespace support
