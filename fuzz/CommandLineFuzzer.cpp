// The command lines of the viewer and of the tool.
#include "FuzzInput.h"
#include "app/TracelynApp.h"
#include "cli/Options.h"
#include "support/Startup.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

using namespace Tracelyn;

namespace {

// More arguments than a command line may have stop the program, which is a promise of its own. Counts them
// the plain way: a stretch of text without blanks outside quotes.
size_t CountArguments(std::string_view text) {
    size_t count = 0;
    bool quoted = false;
    bool wasBlank = true;
    for (const char c : text) {
        const bool blank = !quoted && (c == ' ' || c == '\t');
        if (!blank && wasBlank)
            ++count;
        wasBlank = blank;
        quoted = quoted != (c == '"');
    }
    return count;
}

void CheckSplitting(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv{"program"};
    for (const std::string& argument : arguments) {
        Require(argument.find('"') == std::string::npos, "quotes are dropped");
        if (argument.find('\0') != std::string::npos)
            return; // no process has such an argument
        argv.push_back(argument.c_str());
    }
    const std::string joined = support::JoinArguments(static_cast<int>(argv.size()), argv.data());
    Require(support::SplitCommandLine(joined) == arguments, "joined arguments split into the same again");
}

void CheckViewer(const QStringList& arguments) {
    int level = 0;
    QString file;
    for (const QString& argument : arguments) {
        const QString token = argument.startsWith(u'-') ? argument.mid(1) : argument;
        if (token == u"60418")
            level = std::max(level, 1);
        if (token == u"83206")
            level = std::max(level, 2);
        if (token == u"47195")
            level = std::max(level, 3);
        file = token.startsWith(u".paf") ? QString() : token;
    }
    CTracelynCommandLineInfo info;
    info.ParseCommandLine(arguments);
    Require(info.GetAccessLevel() == level, "the highest level of all codes");
    Require(info.GetFileName() == file, "the last argument is the file");
}

void CheckTool(const QStringList& arguments) {
    QString error;
    const auto options = ParseOptions(arguments, error);
    if (!options) {
        Require(!error.isEmpty(), "wrong usage has a reason");
        return;
    }
    constexpr int kLargestSide = 16384;
    const QSize size = options->view.size;
    Require(size.width() >= 1 && size.width() <= kLargestSide && size.height() >= 1 &&
                size.height() <= kLargestSide,
            "a picture's size is within its limits");
    Require(options->accessLevel >= 0 && options->accessLevel <= 3, "a level is 0 to 3");
    const std::optional<float> zoom = options->view.zoom;
    Require(!zoom || std::isfinite(*zoom), "a zoom factor is a number");
    const bool needsOutput = options->command == Command::Csv || options->command == Command::Render ||
                             options->command == Command::Pack || options->command == Command::Expand;
    Require(!needsOutput || arguments.contains(options->output), "an output that was named");
    const bool takesMany = options->command == Command::Stats || options->command == Command::Compare;
    Require(takesMany != options->inputs.isEmpty(), "files that were named");
    const auto& [from, to, whileSignal] = options->samples;
    Require(!from || !to || (*from >= 0 && *from <= *to), "a range is in order");
    for (const Tolerance& tolerance : options->tolerances)
        Require(std::isfinite(tolerance.largest) && tolerance.largest >= 0, "a tolerance is a number");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = TextOf(data, size);
    if (CountArguments(text) > support::kMaxArguments)
        return 0;
    const std::vector<std::string> arguments = support::SplitCommandLine(text);
    Require(arguments.size() == CountArguments(text), "every argument is found");
    CheckSplitting(arguments);
    QStringList list;
    for (const std::string& argument : arguments)
        list += QString::fromUtf8(argument);
    CheckViewer(list);
    CheckTool(list);
    return 0;
}
