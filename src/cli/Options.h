// The tool's command line.
#pragma once

#include "measure/ComparisonTable.h"
#include "measure/SampleChoice.h"
#include "measure/Table.h"
#include "render/Picture.h"
#include "render/PictureView.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Tracelyn {

enum class Command { Info, Csv, Render, Pack, Expand, Stats, Compare, Help, Version };

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

    PictureView view;
    std::optional<QString> behind; // the recording that is drawn behind the input
    // Of the pictures of all `inputs`, instead of the one `output`.
    std::optional<QString> folder;
    std::optional<PictureFormat> pictureFormat; // only with a folder

    SampleChoice samples;
    TableFormat format = TableFormat::Table;
    // Nothing when recordings are aligned at their first samples.
    std::optional<QString> alignSignal;
    std::vector<Tolerance> tolerances;
};

QString UsageText();

// The arguments come without the program's name. On wrong usage the result is empty and `error` says why.
std::optional<Options> ParseOptions(const QStringList& arguments, QString& error);

} // namespace Tracelyn
