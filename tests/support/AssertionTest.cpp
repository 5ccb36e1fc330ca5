// Assertions, and what reports through them: lack of memory and a start that fails.
#include "support/Assertion.h"
#include "Testing.h"
#include "support/Startup.h"

#include <new>

// The address sanitizer otherwise stops the program where malloc gives null.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

class Reports : public testing::Test {
protected:
    ~Reports() override { support::SetAssertionReporter(m_Previous); }

    QStringList m_Texts;
    support::AssertionReporter m_Previous =
        support::SetAssertionReporter([this](const QString& text) { m_Texts << text; });
};

} // namespace

TEST(Assertion, NamesItsTextAndPlaceAndStopsTheProgram) {
    support::Assert(true, "never seen");
    EXPECT_DEATH(support::Assert(false, "p!=0"), "p!=0, tests/support/AssertionTest.cpp:");
}

TEST_F(Reports, TheSizeThatMemoryLacksInHexadecimal) {
    volatile std::size_t tooMuch = 0x7000'0000'0000'0000; // volatile: the compiler would warn of the size
    EXPECT_THROW(support::Allocate(tooMuch), std::bad_alloc);
    EXPECT_EQ(m_Texts, QStringList{"out of memory allocating 7000000000000000 bytes"});
}

TEST_F(Reports, OnceWhenReportingItselfRunsOutOfMemory) {
    int calls = 0;
    support::SetAssertionReporter([&](const QString&) {
        ++calls;
        support::ReportOutOfMemory(1);
    });
    EXPECT_THROW(support::ReportOutOfMemory(0xFF), std::bad_alloc);
    EXPECT_THROW(support::ReportOutOfMemory(0xFF), std::bad_alloc);
    EXPECT_EQ(calls, 2);
}

TEST_F(Reports, AFloatingPointUnitThatIsNotExactInsteadOfRunningMain) {
    int runs = 0;
    const auto mainFunction = [&] {
        ++runs;
        return 42;
    };
    for (const double result : {0.0, std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0), double{NAN}}) {
        EXPECT_EQ(support::RunMain("60418", mainFunction, result), -1) << result;
        EXPECT_EQ(std::exchange(m_Texts, {}), QStringList{"FPU error"});
        EXPECT_EQ(runs, 0);
    }
    EXPECT_EQ(support::RunMain("60418 \"my file.paf\"", mainFunction), 42);
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(m_Texts.isEmpty());
}
