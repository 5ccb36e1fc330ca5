// How a program starts: its command line as one narrow (UTF-8) text and as arguments, the floating-point
// self-test, and the main function.
#pragma once

#include <QStringList>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace support {

inline constexpr int kMaxArguments = 10;

// Splits at blanks; a double quote toggles a quoted run, in which blanks do not split, and is dropped. A pair
// of quotes with nothing between them is an empty argument. More than 10 arguments is a failed assertion.
std::vector<std::string> SplitCommandLine(std::string_view commandLine);

// The command line that SplitCommandLine turns back into argv[1], argv[2] ... A command line cannot express a
// quote inside an argument, so such quotes are dropped.
std::string JoinArguments(int argc, const char* const* argv);

// The command line of this process without the program's name: the system's own text on Windows (whose argv
// is not UTF-8), argv joined elsewhere.
std::string ProcessCommandLine(int argc, const char* const* argv);

// Every argument after the program's name, as the user typed it: a toolkit's application object takes those
// out that it knows.
QStringList ProcessArguments(int argc, const char* const* argv);

using MainFunction = std::function<int()>;

// What the self-test computed before main began; exactly 1.0 on a working floating-point unit.
double GetFpuSelfTestResult();

// Reports "FPU error" and returns -1 when fpuResult is not exactly 1.0. Otherwise splits the command line,
// which fails on too many arguments, runs mainFunction on the calling thread and returns its result. On
// Windows the thread's name is "<main>" then. On Linux the main thread keeps its name, which is the one of
// the process: ps and top would call the program "<main>".
int RunMain(std::string_view commandLine, const MainFunction& mainFunction,
            double fpuResult = GetFpuSelfTestResult());

} // namespace support
