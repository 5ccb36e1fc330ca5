#include "support/LargePages.h"

#include <algorithm>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace support {

#ifdef __linux__

namespace {

constexpr size_t kLargePage = 1 << 21;
constexpr auto kAlignment = std::align_val_t{kLargePage};

// How much of the array is for large pages. Its end is left to small pages when it would use less than three
// quarters of a large one.
size_t BytesInLargePages(size_t bytes) {
    return (bytes + kLargePage / 4) / kLargePage * kLargePage;
}

} // namespace

void* NewLargeArray(size_t bytes) {
    const size_t large = BytesInLargePages(bytes);
    if (large == 0)
        return ::operator new(bytes);
    void* const memory = ::operator new(std::max(bytes, large), kAlignment);
    // Nothing depends on the answer.
    static_cast<void>(::madvise(memory, large, MADV_HUGEPAGE));
    return memory;
}

void DeleteLargeArray(void* memory, size_t bytes) noexcept {
    if (BytesInLargePages(bytes) == 0)
        ::operator delete(memory);
    else
        ::operator delete(memory, kAlignment);
}

#else

void* NewLargeArray(size_t bytes) {
    return ::operator new(bytes);
}

void DeleteLargeArray(void* memory, size_t /*bytes*/) noexcept {
    ::operator delete(memory);
}

#endif

} // namespace support
