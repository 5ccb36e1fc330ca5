#include "support/LargePages.h"

#ifdef __linux__
#include <cstdint>
#include <sys/mman.h>
#endif

namespace support {

#ifdef __linux__

void PreferLargePages(std::span<std::byte> memory) {
    constexpr size_t kPageBytes = 4096;
    constexpr size_t kWorthBytes = 1 << 21; // a large page
    if (memory.size() < kWorthBytes)
        return;
    const size_t before = (kPageBytes - reinterpret_cast<uintptr_t>(memory.data()) % kPageBytes) % kPageBytes;
    const auto pages = memory.subspan(before);
    // Nothing depends on the answer.
    static_cast<void>(::madvise(pages.data(), pages.size() / kPageBytes * kPageBytes, MADV_HUGEPAGE));
}

#else

void PreferLargePages(std::span<std::byte> /*memory*/) {}

#endif

} // namespace support
