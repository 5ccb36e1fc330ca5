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

bool CheckFolderFileCount(const CommandEntry& command, qsizetype given, QString& error) {
    if (given > 0)
        return true;
    error = QStringLiteral("%1 --%2 takes 1 file(s) or more, not 0")
                .arg(QLatin1String(command.name), QLatin1String(command.folderOptions.front().name));
    return false;
}

// False when an option that only counts with a folder is given without one.
bool CheckFolderOptions(const QCommandLineParser& parser, const CommandEntry& command, QString& error) {
    const std::span<const OptionEntry> options = command.folderOptions;
    for (const OptionEntry& option : options) {
        if (parser.isSet(QLatin1String(option.name)) && !parser.isSet(QLatin1String(options.front().name))) {
            error = QStringLiteral("--%1 needs --%2")
                        .arg(QLatin1String(option.name), QLatin1String(options.front().name));
            return false;
        }
    }
    return true;
}

std::optional<Options> ParseCommand(const CommandEntry& command, const QStringList& arguments,
                                    QString& error) {
    QCommandLineParser parser;
    std::vector<OptionEntry> allOptions(command.options.begin(), command.options.end());
    allOptions.insert(allOptions.end(), command.folderOptions.begin(), command.folderOptions.end());
    for (const OptionEntry& option : allOptions)
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
    if (!CheckFolderOptions(parser, command, error))
        return std::nullopt;
    const bool isIntoFolder =
        !command.folderOptions.empty() && parser.isSet(QLatin1String(command.folderOptions.front().name));
    if (!(isIntoFolder ? CheckFolderFileCount : CheckFileCount)(command, files.size(), error))
        return std::nullopt;
    Options options;
    options.command = command.command;
    options.input = files.first();
    if (isIntoFolder || TakesMoreFiles(command))
        options.inputs = files;
    else if (files.size() > 1)
        options.output = files.last();
    for (const OptionEntry& option : allOptions) {
        if (!ReadOption(parser, option, options, error))
            return std::nullopt;
    }
    const auto& [from, to, whileSignal] = options.samples;
    if (from && to && *from > *to) {
        error = QStringLiteral("--from %1 lies behind --to %2").arg(*from).arg(*to);
        return std::nullopt;
    }
    return options;
}

QString UsageOf(const OptionEntry& option) {
    const QString value = option.value == nullptr ? QString() : u' ' + QLatin1String(option.value);
    return QStringLiteral("--%1%2").arg(QLatin1String(option.name), value);
}

QStringList PartsOf(std::span<const OptionEntry> options) {
    QStringList parts;
    for (const OptionEntry& option : options)
        parts.append(u'[' + UsageOf(option) + QLatin1String(option.isRepeatable ? "]..." : "]"));
    return parts;
}

// The parts of a command's usage, in lines of limited length.
QString UsageOf(const CommandEntry& command, const QStringList& parts) {
    constexpr qsizetype kLineLength = 85;
    const QString begin = QStringLiteral("  tracelyn-cli %1").arg(QLatin1String(command.name), -7);
    QString text;
    QString line = begin;
    for (const QString& part : parts) {
        if (line.size() + 1 + part.size() > kLineLength) {
            text += line + u'\n';
            line = QString(begin.size(), u' ');
        }
        line += u' ' + part;
    }
    return text + line + u'\n';
}

QString UsageOf(const CommandEntry& command) {
    QStringList files;
    for (const char* file : command.files)
        files.append(QLatin1String(file));
    QString text = UsageOf(command, PartsOf(command.options) + QStringList{files.join(u' ')});
    if (!command.folderOptions.empty())
        text += UsageOf(command, QStringList{UsageOf(command.folderOptions.front())} +
                                     PartsOf(command.folderOptions.subspan(1)) +
                                     QStringList{QStringLiteral("[OPTION]..."), QStringLiteral("FILE...")});
    return text;
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
