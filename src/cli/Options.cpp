#include "cli/Options.h"

#include "reader/AccessLevel.h"
#include "support/Limits.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>

namespace Tracelyn {

namespace {

struct CommandEntry {
    const char* name;
    Command command;
    qsizetype files;
    bool takesCodes;
};

constexpr std::array kCommands{
    CommandEntry{"info", Command::Info, 1, true},      CommandEntry{"csv", Command::Csv, 2, true},
    CommandEntry{"render", Command::Render, 2, true},  CommandEntry{"pack", Command::Pack, 2, false},
    CommandEntry{"expand", Command::Expand, 2, false},
};

void AddOptions(QCommandLineParser& parser, const CommandEntry& command) {
    const auto add = [&](const char* name) {
        parser.addOption({QString::fromLatin1(name), QString(), QStringLiteral("value")});
    };
    if (command.takesCodes)
        add("code");
    if (command.command == Command::Render) {
        for (const char* name : {"size", "scheme", "cursor", "fixed", "zoom", "scroll", "console", "toggle"})
            add(name);
    }
}

// Reads one option with `convert`, which returns nothing for a value that makes no sense. False on such a
// value.
template <class T, class Convert>
bool ReadOption(const QCommandLineParser& parser, const char* name, T& target, QString& error,
                Convert convert) {
    const QString key = QString::fromLatin1(name);
    if (!parser.isSet(key))
        return true;
    const auto value = convert(parser.value(key));
    if (value)
        target = *value;
    else
        error = QStringLiteral("--%1: '%2' is not allowed").arg(key, parser.value(key));
    return value.has_value();
}

std::optional<int> ToInt(const QString& text) {
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<float> ToFloat(const QString& text) {
    bool ok = false;
    const float value = text.toFloat(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<QSize> ToSize(const QString& text) {
    const QStringList sides = text.split(QLatin1Char('x'));
    if (sides.size() != 2)
        return std::nullopt;
    const auto width = ToInt(sides[0]);
    const auto height = ToInt(sides[1]);
    const auto isAllowed = [](std::optional<int> side) {
        return side && *side >= 1 && *side <= support::limits::kPictureSide;
    };
    return isAllowed(width) && isAllowed(height) ? std::optional(QSize(*width, *height)) : std::nullopt;
}

// True for the first word, false for the second.
auto OneOf(const char* first, const char* second) {
    return [=](const QString& text) -> std::optional<bool> {
        if (text == QLatin1String(first))
            return true;
        return text == QLatin1String(second) ? std::optional(false) : std::nullopt;
    };
}

bool ReadRenderOptions(const QCommandLineParser& parser, Options& options, QString& error) {
    options.toggledGroups = parser.values(QStringLiteral("toggle"));
    return ReadOption(parser, "size", options.size, error, ToSize) &&
           ReadOption(parser, "scheme", options.dark, error, OneOf("dark", "light")) &&
           ReadOption(parser, "cursor", options.cursor, error, ToInt) &&
           ReadOption(parser, "fixed", options.fixedCursor, error, ToInt) &&
           ReadOption(parser, "zoom", options.zoom, error, ToFloat) &&
           ReadOption(parser, "scroll", options.scroll, error, ToInt) &&
           ReadOption(parser, "console", options.consoleOnLeft, error, OneOf("left", "right"));
}

std::optional<Options> ParseCommand(const CommandEntry& command, const QStringList& arguments,
                                    QString& error) {
    QCommandLineParser parser;
    AddOptions(parser, command);
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return std::nullopt;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() != command.files) {
        error = QStringLiteral("%1 takes %2 file(s), not %3")
                    .arg(QLatin1String(command.name))
                    .arg(command.files)
                    .arg(files.size());
        return std::nullopt;
    }
    Options options;
    options.command = command.command;
    options.input = files.first();
    if (files.size() > 1)
        options.output = files.last();
    if (command.takesCodes) {
        for (const QString& code : parser.values(QStringLiteral("code")))
            options.accessLevel = std::max(options.accessLevel, LevelGrantedBy(code));
    }
    if (command.command == Command::Render && !ReadRenderOptions(parser, options, error))
        return std::nullopt;
    return options;
}

} // namespace

QString UsageText() {
    return QStringLiteral(
        "usage:\n"
        "  tracelyn-cli info   [--code C]... FILE\n"
        "  tracelyn-cli csv    [--code C]... FILE OUT.csv\n"
        "  tracelyn-cli render [--code C]... [--size WxH] [--scheme dark|light] [--cursor N]\n"
        "                      [--fixed N] [--zoom F] [--scroll N] [--console left|right]\n"
        "                      [--toggle GROUP]... FILE OUT.png\n"
        "  tracelyn-cli pack   IN.xml OUT.paf\n"
        "  tracelyn-cli expand IN.paf OUT.xml\n"
        "  tracelyn-cli --help | --version\n"
        "\n"
        "FILE is an analysis file, .xml or .paf.\n"
        "exit code: 0 no problems, 1 nothing read or written, 2 wrong usage,\n"
        "           3 read with problems (each on the error output), the output is written\n");
}

std::optional<Options> ParseOptions(const QStringList& arguments, QString& error) {
    if (arguments.isEmpty()) {
        error = QStringLiteral("no command given");
        return std::nullopt;
    }
    if (arguments.contains(QStringLiteral("--help")))
        return Options{};
    if (arguments.first() == QLatin1String("--version")) {
        Options options;
        options.command = Command::Version;
        return options;
    }
    const auto command = std::ranges::find_if(
        kCommands, [&](const CommandEntry& entry) { return arguments.first() == QLatin1String(entry.name); });
    if (command == kCommands.end()) {
        error = QStringLiteral("unknown command '%1'").arg(arguments.first());
        return std::nullopt;
    }
    // The parser skips its first argument, so that the command stands where it expects the program's name.
    return ParseCommand(*command, arguments, error);
}

} // namespace Tracelyn
