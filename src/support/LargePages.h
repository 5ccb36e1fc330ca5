// Memory for large arrays that are filled soon.
#pragma once

#include <cstddef>

namespace support {

// Memory as operator new gives it; throws std::bad_alloc. A large array is placed so that the system may back
// it with large pages, which it hands out faster; at most a third more than `bytes` is used up then.
[[nodiscard]] void* NewLargeArray(size_t bytes);

// Gives back what NewLargeArray(bytes) returned.
void DeleteLargeArray(void* memory, size_t bytes) noexcept;

} // namespace support
