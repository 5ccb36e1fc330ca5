// The tool's command line.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace Tracelyn {

enum class Command { Info, Csv, Render, Pack, Expand, Help, Version };

struct Options {
    Command command = Command::Help;
    // The highest that the given codes grant.
    int accessLevel = 0;
    // Those that grant nothing.
    QStringList uselessCodes;
    QString input;
    QString output;

    QSize size{1280, 720};
    bool dark = true;
    std::optional<int> cursor;
    std::optional<int> fixedCursor;
    std::optional<float> zoom;
    std::optional<int> scroll;
    std::optional<bool> consoleOnLeft;
    QStringList toggledGroups;
    bool everyEvent = false;
};

QString UsageText();

// The arguments come without the program's name. On wrong usage the result is empty and `error` says why.
std::optional<Options> ParseOptions(const QStringList& arguments, QString& error);

} // namespace Tracelyn
