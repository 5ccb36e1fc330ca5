// The tool's command line.
#pragma once

#include "measure/Table.h"
#include "render/Picture.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Tracelyn {

enum class Command { Info, Csv, Render, Pack, Expand, Stats, Compare, Help, Version };

enum class ConsolePlace { Left, Right, None };

// How far the signals of a name may be from the good ones, in scaled units; 0 or more, finite.
struct Tolerance {
    QString signal;
    double largest;
};

struct Options {
    Command command = Command::Help;
    // The highest that the given codes grant.
    int accessLevel = 0;
    // Those that grant nothing.
    QStringList uselessCodes;
    QString input;
    QString output;
    // All files, for the commands that take any number; `input` is the first one.
    QStringList inputs;

    QSize size{1280, 720};
    bool dark = true;
    std::optional<int> cursor;
    std::optional<int> fixedCursor;
    std::optional<float> zoom;
    std::optional<int> scroll;
    std::optional<ConsolePlace> console;
    QStringList toggledGroups;
    bool everyEvent = false;
    std::optional<QString> behind; // the recording that is drawn behind the input
    // Of the pictures of all `inputs`, instead of the one `output`.
    std::optional<QString> folder;
    std::optional<PictureFormat> pictureFormat; // only with a folder

    // Samples, both included; `from` is never behind `to`.
    std::optional<int> from;
    std::optional<int> to;
    std::optional<QString> whileSignal;
    TableFormat format = TableFormat::Table;
    // Nothing when recordings are aligned at their first samples.
    std::optional<QString> alignSignal;
    std::vector<Tolerance> tolerances;
};

QString UsageText();

// The arguments come without the program's name. On wrong usage the result is empty and `error` says why.
std::optional<Options> ParseOptions(const QStringList& arguments, QString& error);

} // namespace Tracelyn
