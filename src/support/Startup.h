// Process start: the floating-point self-test, then the program's main function under the name "<main>".
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace support {

using MainFunction = std::function<int(const std::vector<std::string>& arguments)>;

// What the self-test computed before main began; exactly 1.0 on a working floating-point unit.
double FpuSelfTestResult();

// Reports "FPU error" and returns -1 when fpuResult is not exactly 1.0. Otherwise splits the command line,
// names the calling thread "<main>", runs mainFunction on it and returns its result.
int RunMain(std::string_view commandLine, const MainFunction& mainFunction,
            double fpuResult = FpuSelfTestResult());

} // namespace support
