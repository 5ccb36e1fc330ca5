#include "support/LargePages.h"

#include <new>

#ifdef __linux__
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sys/mman.h>
#endif

namespace support {

#ifdef __linux__

namespace {

constexpr size_t kPage = 4096;
constexpr size_t kLargePage = 1 << 21;

// How much of the array is for large pages. Its end is left to small pages when it would use less than three
// quarters of a large one.
size_t BytesInLargePages(size_t bytes) {
    return (bytes + kLargePage / 4) / kLargePage * kLargePage;
}

size_t RoundUp(size_t value, size_t to) {
    return (value + to - 1) / to * to;
}

} // namespace

// Not the aligned operator new, whose failure the viewer does not report. What the plain one returned lies
// somewhere in the large page before the array: right before that is where.
void* NewLargeArray(size_t bytes) {
    const size_t large = BytesInLargePages(bytes);
    if (large == 0)
        return ::operator new(bytes);
    void* const whole = ::operator new(std::max(bytes, large) + kLargePage + sizeof(void*));
    auto* const first = static_cast<std::byte*>(whole);
    const auto address = reinterpret_cast<uintptr_t>(first);
    std::byte* const memory = first + (RoundUp(address + sizeof(void*), kLargePage) - address);
    std::memcpy(memory - sizeof(void*), &whole, sizeof(void*));
    // Nothing depends on the answers. Where the system takes large pages unasked it takes none for the end.
    static_cast<void>(::madvise(memory, large, MADV_HUGEPAGE));
    if (bytes > large)
        static_cast<void>(::madvise(memory + large, RoundUp(bytes - large, kPage), MADV_NOHUGEPAGE));
    return memory;
}

void DeleteLargeArray(void* memory, size_t bytes) noexcept {
    void* whole = memory;
    if (BytesInLargePages(bytes) != 0)
        std::memcpy(&whole, static_cast<std::byte*>(memory) - sizeof(void*), sizeof(void*));
    ::operator delete(whole);
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
