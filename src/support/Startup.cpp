#include "support/Startup.h"

#include "support/Assertion.h"
#include "support/CommandLine.h"

#ifdef _WIN32
#include <QLibrary>
#include <windows.h>
#elif defined(__linux__)
#include <pthread.h>
#endif

#include <cfenv>

namespace support {

namespace {

double ComputeFpuSelfTest() {
    std::fesetenv(FE_DFL_ENV);
    volatile double x = 1.5; // volatile: the processor computes it, not the compiler
    return (x * x - 0.25) / 2.0;
}

const volatile double g_fpuSelfTestResult = ComputeFpuSelfTest();

void NameMainThread() {
#ifdef _WIN32
    // Missing before Windows 10, where a thread has no name.
    using SetDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
    if (const auto set = reinterpret_cast<SetDescription>(
            QLibrary::resolve(QStringLiteral("kernel32"), "SetThreadDescription")))
        set(::GetCurrentThread(), L"<main>");
#elif defined(__linux__)
    ::pthread_setname_np(::pthread_self(), "<main>");
#endif
}

} // namespace

double FpuSelfTestResult() {
    return g_fpuSelfTestResult;
}

int RunMain(std::string_view commandLine, const MainFunction& mainFunction, double fpuResult) {
    if (fpuResult != 1.0) {
        ReportAssertion(QStringLiteral("FPU error"));
        return -1;
    }
    const std::vector<std::string> arguments = SplitCommandLine(commandLine);
    NameMainThread();
    return mainFunction(arguments);
}

} // namespace support
