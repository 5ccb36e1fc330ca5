// The steps from a loaded graph to its picture in a file.
#pragma once

#include "cli/Options.h"
#include "cli/SeveralFiles.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tracelyn {

class CGraph;
class CGraphData;
class COffscreenWindow;
class CRecording;

// Shows the part of the loaded graph that the options name. False, with the reason, when they name a group
// that the file does not have.
bool ShowView(CGraph& graph, COffscreenWindow& window, const Options& options, QString& error);

// Reads the recording to compare with, which the options name. Returns where its zero is; nothing, with the
// reason in the report, when there is nothing to compare with.
std::optional<int> ReadGood(CRecording& good, const Options& options, const support::Progress& progress,
                            FileReport& report);

// Shows the good recording, with its zero, behind the graph of the file. The graph borrows it. False, with
// the reason in the report, when there is nothing to compare.
bool ShowBehind(CGraph& graph, COffscreenWindow& window, const Options& options, const QString& file,
                const CGraphData& good, std::optional<int> goodZero, FileReport& report);

// Nothing when the picture is in the file, else why it is not.
std::optional<QString> WritePicture(const QByteArray& picture, const QString& path);

} // namespace Tracelyn
