#include "Assertion.h"

#include <cstdio>
#include <cstdlib>
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

} // namespace

AssertionReporter SetAssertionReporter(AssertionReporter reporter) {
    if (!reporter)
        reporter = PrintAssertion;
    return std::exchange(CurrentReporter(), std::move(reporter));
}

void ReportAssertion(const QString& text) {
    CurrentReporter()(text);
}

void FailAssertion(const char* text, const char* file, int line) {
    ReportAssertion(QStringLiteral("%1, %2:%3")
                        .arg(QString::fromUtf8(text), QString::fromUtf8(file), QString::number(line)));
    std::abort();
}

} // namespace support
