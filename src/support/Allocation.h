// What happens when memory runs out: one assertion report with the size, then the standard exception.
#pragma once

#include <cstddef>

namespace support {

// Reports "out of memory allocating <size in hexadecimal> bytes" and throws std::bad_alloc. Works with little
// memory left; running out of memory inside the report is not reported again.
[[noreturn]] void ReportOutOfMemory(std::size_t size);

// Memory from malloc (size 0 gives a pointer of its own), to be returned with std::free. Never null.
void* Allocate(std::size_t size);

} // namespace support
