#include "Allocation.h"
#include "CapturedReports.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>

// The address sanitizer otherwise stops the program where malloc gives null.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

using support::Allocate;
using support::ReportOutOfMemory;

TEST(Allocation, GivesUsableMemoryAlsoForNothing) {
    for (const std::size_t size : {0U, 1U, 5000U}) {
        void* const memory = Allocate(size);
        ASSERT_NE(memory, nullptr);
        std::memset(memory, 0xAB, size);
        std::free(memory);
    }
}

TEST(Allocation, ReportsTheSizeInHexadecimalAndThrows) {
    const CapturedReports reports;
    volatile std::size_t tooMuch = 0x7000'0000'0000'0000; // volatile: the compiler would warn of the size
    EXPECT_THROW(Allocate(tooMuch), std::bad_alloc);
    EXPECT_EQ(reports.Texts(), QStringList{"out of memory allocating 7000000000000000 bytes"});
}

TEST(Allocation, AReporterThatRunsOutOfMemoryItselfIsNotCalledAgain) {
    int calls = 0;
    const auto previous = support::SetAssertionReporter([&](const QString&) {
        ++calls;
        ReportOutOfMemory(1);
    });
    EXPECT_THROW(ReportOutOfMemory(0xFF), std::bad_alloc);
    EXPECT_THROW(ReportOutOfMemory(0xFF), std::bad_alloc);
    EXPECT_EQ(calls, 2);
    support::SetAssertionReporter(previous);
}
