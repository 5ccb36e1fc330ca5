#include "support/Startup.h"

#include "support/Assertion.h"

#include <QString>

#ifdef _WIN32
#include <QLibrary>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>
#endif

#include <algorithm>
#include <cfenv>

namespace support {

namespace {

constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

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
    if (const auto setDescription = reinterpret_cast<SetDescription>(
            QLibrary::resolve(QStringLiteral("kernel32"), "SetThreadDescription")))
        setDescription(::GetCurrentThread(), L"<main>");
#endif
}

// On Windows the compiler's runtime frees what belongs to a thread before it calls the destructors of those
// objects. Qt has one in every thread that has matched a pattern, unless patterns are interpreted.
void InterpretPatterns() {
#ifdef _WIN32
    qputenv("QT_ENABLE_REGEXP_JIT", "0");
#endif
}

} // namespace

std::vector<std::string> SplitCommandLine(std::string_view commandLine) {
    std::vector<std::string> arguments;
    bool inArgument = false;
    bool quoted = false;
    for (const char c : commandLine) {
        if (IsBlank(c) && !quoted) {
            inArgument = false;
            continue;
        }
        if (!inArgument) {
            Assert(arguments.size() < kMaxArguments, "argc < (sizeof(argv)/sizeof(argv[0]))");
            arguments.emplace_back();
            inArgument = true;
        }
        if (c == '"')
            quoted = !quoted;
        else
            arguments.back() += c;
    }
    return arguments;
}

std::string JoinArguments(int argc, const char* const* argv) {
    std::string commandLine;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        std::erase(argument, '"');
        const bool quote = argument.empty() || std::any_of(argument.begin(), argument.end(), IsBlank);
        if (i > 1)
            commandLine += ' ';
        commandLine += quote ? '"' + argument + '"' : argument;
    }
    return commandLine;
}

std::string ProcessCommandLine([[maybe_unused]] int argc, [[maybe_unused]] const char* const* argv) {
#ifdef _WIN32
    const std::string whole = QString::fromWCharArray(::GetCommandLineW()).toStdString();
    // The program's name is quoted when it has blanks, and holds no quotes itself.
    const std::size_t nameEnd = whole.starts_with('"') ? whole.find('"', 1) : whole.find_first_of(" \t");
    return nameEnd == std::string::npos ? std::string() : whole.substr(nameEnd + 1);
#else
    return JoinArguments(argc, argv);
#endif
}

QStringList ProcessArguments([[maybe_unused]] int argc, [[maybe_unused]] const char* const* argv) {
    QStringList arguments;
#ifdef _WIN32
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        arguments += QString::fromWCharArray(wide[i]);
    ::LocalFree(wide);
#else
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
#endif
    return arguments;
}

double GetFpuSelfTestResult() {
    return g_fpuSelfTestResult;
}

int RunMain(std::string_view commandLine, const MainFunction& mainFunction, double fpuResult) {
    if (fpuResult != 1.0) {
        ReportAssertion(QStringLiteral("FPU error"));
        return -1;
    }
    SplitCommandLine(commandLine); // counts; the main function has ProcessArguments
    NameMainThread();
    InterpretPatterns();
    return mainFunction();
}

} // namespace support
