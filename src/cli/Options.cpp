#include "cli/Options.h"

#include "reader/SignalFileReader.h"
#include "support/Limits.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <utility>

namespace Tracelyn {

namespace {

std::optional<int> ToInt(const QString& text) {
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<int> ToPosition(const QString& text) {
    const auto value = ToInt(text);
    return value && *value >= 0 ? value : std::nullopt;
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
        return side && *side >= 1 && *side <= support::limits::kMaxPictureSidePixels;
    };
    return isAllowed(width) && isAllowed(height) ? std::optional(QSize(*width, *height)) : std::nullopt;
}

// True for the first word, false for the second.
std::optional<bool> FirstOf(const QString& text, const char* first, const char* second) {
    if (text == QLatin1String(first))
        return true;
    return text == QLatin1String(second) ? std::optional(false) : std::nullopt;
}

// Stores a converted value. False when the conversion has none, since the text makes no sense.
template <class T, class Value>
bool Store(T& target, const std::optional<Value>& value) {
    if (value)
        target = *value;
    return value.has_value();
}

struct OptionEntry {
    const char* name;
    const char* value; // as the usage names it
    bool isRepeatable;
    // Takes one given value. False when it is not allowed.
    bool (*read)(const QString& text, Options& options);
};

constexpr std::array kCode{
    OptionEntry{"code", "C", true,
                [](const QString& text, Options& options) {
                    const int level = LevelGrantedBy(text);
                    options.accessLevel = std::max(options.accessLevel, level);
                    if (level == 0)
                        options.uselessCodes.append(text);
                    return true;
                }},
};

constexpr std::array kRenderOptions{
    kCode[0],
    OptionEntry{"size", "WxH", false,
                [](const QString& text, Options& options) { return Store(options.size, ToSize(text)); }},
    OptionEntry{"scheme", "dark|light", false,
                [](const QString& text, Options& options) {
                    return Store(options.dark, FirstOf(text, "dark", "light"));
                }},
    OptionEntry{"cursor", "N", false,
                [](const QString& text, Options& options) { return Store(options.cursor, ToInt(text)); }},
    OptionEntry{
        "fixed", "N", false,
        [](const QString& text, Options& options) { return Store(options.fixedCursor, ToInt(text)); }},
    OptionEntry{"zoom", "F", false,
                [](const QString& text, Options& options) { return Store(options.zoom, ToFloat(text)); }},
    OptionEntry{
        "scroll", "N", false,
        [](const QString& text, Options& options) { return Store(options.scroll, ToPosition(text)); }},
    OptionEntry{"console", "left|right", false,
                [](const QString& text, Options& options) {
                    return Store(options.consoleOnLeft, FirstOf(text, "left", "right"));
                }},
    OptionEntry{"toggle", "GROUP", true,
                [](const QString& text, Options& options) {
                    options.toggledGroups.append(text);
                    return true;
                }},
};

struct CommandEntry {
    const char* name;
    Command command;
    std::span<const OptionEntry> options;
    std::span<const char* const> files; // as the usage names them
};

constexpr std::array kInfoFiles{"FILE"};
constexpr std::array kCsvFiles{"FILE", "OUT.csv"};
constexpr std::array kRenderFiles{"FILE", "OUT.png|svg|pdf"};
constexpr std::array kPackFiles{"IN.xml", "OUT.paf"};
constexpr std::array kExpandFiles{"IN.paf", "OUT.xml"};

// All that the parser and the usage know of the commands.
constexpr std::array kCommands{
    CommandEntry{"info", Command::Info, kCode, kInfoFiles},
    CommandEntry{"csv", Command::Csv, kCode, kCsvFiles},
    CommandEntry{"render", Command::Render, kRenderOptions, kRenderFiles},
    CommandEntry{"pack", Command::Pack, {}, kPackFiles},
    CommandEntry{"expand", Command::Expand, {}, kExpandFiles},
};

bool ReadOption(const QCommandLineParser& parser, const OptionEntry& option, Options& options,
                QString& error) {
    const QString name = QString::fromLatin1(option.name);
    QStringList given = parser.values(name);
    if (!option.isRepeatable && given.size() > 1)
        given = {given.last()};
    for (const QString& text : std::as_const(given)) {
        if (!option.read(text, options)) {
            error = QStringLiteral("--%1: '%2' is not allowed").arg(name, text);
            return false;
        }
    }
    return true;
}

std::optional<Options> ParseCommand(const CommandEntry& command, const QStringList& arguments,
                                    QString& error) {
    QCommandLineParser parser;
    for (const OptionEntry& option : command.options)
        parser.addOption({QString::fromLatin1(option.name), QString(), QStringLiteral("value")});
    const QCommandLineOption help(QStringLiteral("h"));
    parser.addOption(help);
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return std::nullopt;
    }
    if (parser.isSet(help))
        return Options{};
    const QStringList files = parser.positionalArguments();
    if (static_cast<size_t>(files.size()) != command.files.size()) {
        error = QStringLiteral("%1 takes %2 file(s), not %3")
                    .arg(QLatin1String(command.name))
                    .arg(command.files.size())
                    .arg(files.size());
        return std::nullopt;
    }
    Options options;
    options.command = command.command;
    options.input = files.first();
    if (files.size() > 1)
        options.output = files.last();
    for (const OptionEntry& option : command.options) {
        if (!ReadOption(parser, option, options, error))
            return std::nullopt;
    }
    return options;
}

// The usage of one command, in lines of limited length.
QString UsageOf(const CommandEntry& command) {
    QStringList parts;
    for (const OptionEntry& option : command.options) {
        parts.append(QStringLiteral("[--%1 %2]%3")
                         .arg(QLatin1String(option.name), QLatin1String(option.value),
                              QLatin1String(option.isRepeatable ? "..." : "")));
    }
    QStringList files;
    for (const char* file : command.files)
        files.append(QLatin1String(file));
    parts.append(files.join(u' '));

    constexpr qsizetype kLineLength = 85;
    const QString begin = QStringLiteral("  tracelyn-cli %1").arg(QLatin1String(command.name), -6);
    QString text;
    QString line = begin;
    for (const QString& part : std::as_const(parts)) {
        if (line.size() + 1 + part.size() > kLineLength) {
            text += line + u'\n';
            line = QString(begin.size(), u' ');
        }
        line += u' ' + part;
    }
    return text + line + u'\n';
}

} // namespace

QString UsageText() {
    QString text = QStringLiteral("usage:\n");
    for (const CommandEntry& command : kCommands)
        text += UsageOf(command);
    return text + QStringLiteral(
                      "  tracelyn-cli help | -h | --help | --version\n"
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
    const bool isHelp =
        arguments.first() == QLatin1String("help") || arguments.first() == QLatin1String("-h");
    if (isHelp || arguments.contains(QStringLiteral("--help")))
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
