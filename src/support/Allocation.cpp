#include "support/Allocation.h"

#include "support/Assertion.h"

#include <cstdlib>
#include <new>

namespace support {

namespace {

thread_local bool t_reporting = false;

struct ReportingScope {
    ReportingScope() { t_reporting = true; }
    ~ReportingScope() { t_reporting = false; }
    ReportingScope(const ReportingScope&) = delete;
    ReportingScope& operator=(const ReportingScope&) = delete;
};

} // namespace

void ReportOutOfMemory(std::size_t size) {
    if (!t_reporting) {
        const ReportingScope scope;
        ReportAssertion(QStringLiteral("out of memory allocating %1 bytes").arg(size, 0, 16));
    }
    throw std::bad_alloc();
}

void* Allocate(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        ReportOutOfMemory(size);
    return memory;
}

} // namespace support
