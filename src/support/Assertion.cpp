#include "support/Assertion.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

namespace support {

namespace {

void PrintAssertion(const QString& text) {
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

AssertionReporter& CurrentReporter() {
    static AssertionReporter reporter = PrintAssertion;
    return reporter;
}

thread_local bool t_reporting = false;

// Marks the calling thread as reporting: lack of memory inside the report is not reported again.
class CReportingScope {
public:
    CReportingScope() { t_reporting = true; }
    ~CReportingScope() { t_reporting = false; }
    CReportingScope(const CReportingScope&) = delete;
    CReportingScope& operator=(const CReportingScope&) = delete;
};

[[noreturn]] void Abort() {
#ifdef _WIN32
    // The C library's own way would open another box.
    constexpr int kShellsCode = 134; // what shells of other systems give for an aborted program
    std::_Exit(kShellsCode);
#else
    std::abort();
#endif
}

} // namespace

AssertionReporter SetAssertionReporter(AssertionReporter reporter) {
    if (!reporter)
        reporter = PrintAssertion;
    return std::exchange(CurrentReporter(), std::move(reporter));
}

void ReportAssertion(const QString& text) {
    CurrentReporter()(text);
}

void FailAssertion(const char* text, const char* path, int line) {
    ReportAssertion(QStringLiteral("%1, %2:%3")
                        .arg(QString::fromUtf8(text), QString::fromUtf8(path), QString::number(line)));
    Abort();
}

void ReportOutOfMemory(std::size_t size) {
    if (!t_reporting) {
        const CReportingScope scope;
        ReportAssertion(QStringLiteral("out of memory allocating %1 bytes").arg(size, 0, 16));
    }
    throw std::bad_alloc();
}

void* Allocate(std::size_t size) {
    for (;;) {
        if (void* const memory = std::malloc(size == 0 ? 1 : size))
            return memory;
        const std::new_handler freeMemory = std::get_new_handler();
        if (freeMemory == nullptr)
            ReportOutOfMemory(size);
        freeMemory();
    }
}

} // namespace support
