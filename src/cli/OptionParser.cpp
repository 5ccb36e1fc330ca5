#include "cli/OptionTable.h"

#include <QCommandLineParser>

#include <algorithm>
#include <utility>

namespace Tracelyn {

namespace {

bool ReadOption(const QCommandLineParser& parser, const OptionEntry& option, Options& options,
                QString& error) {
    const QString name = QString::fromLatin1(option.name);
    if (option.value == nullptr)
        return !parser.isSet(name) || option.read({}, options);
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

bool TakesMoreFiles(const CommandEntry& command) {
    return QLatin1String(command.files.back()).endsWith(QLatin1String("..."));
}

bool CheckFileCount(const CommandEntry& command, qsizetype given, QString& error) {
    const auto named = static_cast<qsizetype>(command.files.size());
    if (given == named || (given > named && TakesMoreFiles(command)))
        return true;
    error = QStringLiteral("%1 takes %2 file(s)%3, not %4")
                .arg(QLatin1String(command.name))
                .arg(named)
                .arg(QLatin1String(TakesMoreFiles(command) ? " or more" : ""))
                .arg(given);
    return false;
}

std::optional<Options> ParseCommand(const CommandEntry& command, const QStringList& arguments,
                                    QString& error) {
    QCommandLineParser parser;
    for (const OptionEntry& option : command.options)
        parser.addOption({QString::fromLatin1(option.name), QString(), QString::fromLatin1(option.value)});
    const QCommandLineOption help(QStringLiteral("h"));
    parser.addOption(help);
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return std::nullopt;
    }
    if (parser.isSet(help))
        return Options{};
    const QStringList files = parser.positionalArguments();
    if (!CheckFileCount(command, files.size(), error))
        return std::nullopt;
    Options options;
    options.command = command.command;
    options.input = files.first();
    if (TakesMoreFiles(command))
        options.inputs = files;
    else if (files.size() > 1)
        options.output = files.last();
    for (const OptionEntry& option : command.options) {
        if (!ReadOption(parser, option, options, error))
            return std::nullopt;
    }
    if (options.from && options.to && *options.from > *options.to) {
        error = QStringLiteral("--from %1 lies behind --to %2").arg(*options.from).arg(*options.to);
        return std::nullopt;
    }
    return options;
}

// The usage of one command, in lines of limited length.
QString UsageOf(const CommandEntry& command) {
    QStringList parts;
    for (const OptionEntry& option : command.options) {
        const QString value = option.value == nullptr ? QString() : u' ' + QLatin1String(option.value);
        parts.append(
            QStringLiteral("[--%1%2]%3")
                .arg(QLatin1String(option.name), value, QLatin1String(option.isRepeatable ? "..." : "")));
    }
    QStringList files;
    for (const char* file : command.files)
        files.append(QLatin1String(file));
    parts.append(files.join(u' '));

    constexpr qsizetype kLineLength = 85;
    const QString begin = QStringLiteral("  tracelyn-cli %1").arg(QLatin1String(command.name), -7);
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
    for (const CommandEntry& command : AllCommands())
        text += UsageOf(command);
    return text + QStringLiteral(
                      "  tracelyn-cli help | -h | --help | --version\n"
                      "\n"
                      "FILE is an analysis file, .xml or .paf.\n"
                      "exit code: 0 no problems, 1 nothing read or written, 2 wrong usage,\n"
                      "           3 read with problems (each on the error output), the output is written,\n"
                      "           4 a tolerance of compare is broken, the output is written\n");
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
    const std::span<const CommandEntry> commands = AllCommands();
    const auto command = std::ranges::find_if(
        commands, [&](const CommandEntry& entry) { return arguments.first() == QLatin1String(entry.name); });
    if (command == commands.end()) {
        error = QStringLiteral("unknown command '%1'").arg(arguments.first());
        return std::nullopt;
    }
    // The parser skips its first argument, so that the command stands where it expects the program's name.
    return ParseCommand(*command, arguments, error);
}

} // namespace Tracelyn
