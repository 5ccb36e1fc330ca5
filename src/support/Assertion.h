// The assertion report: what a programming error does before it stops the program, and the one place where
// such texts go. The window program replaces the reporter to show them; by default they go to stderr.
#pragma once

#include <QString>

#include <functional>

namespace support {

using AssertionReporter = std::function<void(const QString& text)>;

// Installs a reporter for the whole process (an empty one restores the default) and returns the one before.
AssertionReporter SetAssertionReporter(AssertionReporter reporter);

// Hands the text to the current reporter and returns.
void ReportAssertion(const QString& text);

// Reports the text with its place and aborts.
[[noreturn]] void FailAssertion(const char* text, const char* file, int line);

// The place is the caller's (std::source_location is unknown to the checking tools of the oldest system we
// build on).
inline void Assert(bool ok, const char* text, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
    if (!ok)
        FailAssertion(text, file, line);
}

} // namespace support
