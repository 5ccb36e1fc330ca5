// How a program starts: its command line as one narrow (UTF-8) text, the floating-point self-test, and the
// main function under the name "<main>".
#pragma once

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

using MainFunction = std::function<int()>;

// What the self-test computed before main began; exactly 1.0 on a working floating-point unit.
double GetFpuSelfTestResult();

// Reports "FPU error" and returns -1 when fpuResult is not exactly 1.0. Otherwise splits the command line,
// which fails on too many arguments, names the calling thread "<main>", runs mainFunction on it and returns
// its result.
int RunMain(std::string_view commandLine, const MainFunction& mainFunction,
            double fpuResult = GetFpuSelfTestResult());

} // namespace support
