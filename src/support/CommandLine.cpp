#include "support/CommandLine.h"

#include "support/Assertion.h"

#ifdef _WIN32
#include <QString>
#include <windows.h>
#endif

#include <algorithm>

namespace support {

namespace {

constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t';
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
            Assert(arguments.size() < MaxArguments, "argc < (sizeof(argv)/sizeof(argv[0]))");
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

} // namespace support
