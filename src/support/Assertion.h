// The report of what stops a program: a programming error, or memory that runs out. By default the
// texts go to stderr; the window program installs the reporter of FaultBox.h.
#pragma once

#include <QString>

#include <cstddef>
#include <functional>

namespace support {

using AssertionReporter = std::function<void(const QString& text)>;

// Installs a reporter for the whole process (an empty one restores the default) and returns the one before.
AssertionReporter SetAssertionReporter(AssertionReporter reporter);

// Hands the text to the current reporter and returns.
void ReportAssertion(const QString& text);

// Reports the text with its place, a path below the project's folder and a line, and aborts; on Windows the
// program ends with the code 134.
[[noreturn]] void FailAssertion(const char* text, const char* path, int line);

// Nothing when `ok`; otherwise FailAssertion with the place of the caller. (The oldest system that we build
// on has checking tools that do not know std::source_location.)
inline void Assert(bool ok, const char* text, const char* path = __builtin_FILE(),
                   int line = __builtin_LINE()) {
    if (!ok)
        FailAssertion(text, path, line);
}

// Reports "out of memory allocating <size in hexadecimal> bytes" and throws std::bad_alloc. Works with little
// memory left; running out of memory inside the report is not reported again.
[[noreturn]] void ReportOutOfMemory(std::size_t size);

// What operator new does: memory from malloc (size 0 gives a pointer of its own), to be returned with
// std::free. Never null. While there is none, calls the handler of std::set_new_handler and tries again;
// without a handler ReportOutOfMemory ends it.
void* Allocate(std::size_t size);

} // namespace support
