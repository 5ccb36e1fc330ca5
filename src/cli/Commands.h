// The tool's commands. Each writes its problems to the error output and returns what the tool's exit code
// tells its caller. Interrupted by Ctrl+C, each returns soon, says nothing, and writes its
// whole output or none.
#pragma once

#include "cli/Options.h"
#include "reader/AnalysisFile.h"

#include <optional>

namespace Tracelyn {

enum class ExitCode : int {
    Success = 0,
    // Nothing was read or written.
    Failed = 1,
    WrongUsage = 2,
    // The file was read with problems; the output is written all the same.
    ReadWithProblems = 3,
    // A signal is farther from the good one than allowed; the output is written, whatever else is wrong.
    ToleranceBroken = 4,
};

// Prints the loaded model and the problems found, as JSON.
ExitCode RunInfo(const Options& options);
ExitCode RunCsv(const Options& options);
ExitCode RunRender(const Options& options);
// A picture of each of several files. Returns ReadWithProblems when there is a problem but also a picture.
ExitCode RunRenderIntoFolder(const Options& options);
ExitCode RunPack(const Options& options);
ExitCode RunExpand(const Options& options);
// The statistics of all signals of several files.
ExitCode RunStats(const Options& options);
// How far the signals of several files are from those of a good one. Returns ReadWithProblems also when a
// file cannot be read at all.
ExitCode RunCompare(const Options& options);

// The rest is shared by the commands.

// Reads the input that the options name, with a progress line on a terminal. Empty, with the reason printed,
// when nothing could be read at all; problems inside the file are results. Empty, too, when interrupted.
std::optional<Analysis> LoadInput(const Options& options, CGraphData& data);
// Why nothing of the file could be read; empty when its document went through the reader. `wasReadable` tells
// whether there was a readable file before.
QString ReasonNotRead(const QString& path, bool wasReadable, const Analysis& analysis);
void PrintError(const QString& text);
// Writes to the standard output. False, with the reason printed, when not everything was written.
bool PrintOutput(const QByteArray& bytes);
// Prints why nothing was read or written and returns ExitCode::Failed.
ExitCode Fail(const QString& text);
// The same for an output that cannot be written.
ExitCode FailToWrite(const QString& path, const QString& reason);
// Prints every problem that the reader found. Returns Success when there is none, else ReadWithProblems.
ExitCode ReportResults(const Analysis& analysis);
// True when there are problems and no group. An output would be empty and might replace a useful one, so the
// commands write none.
bool IsNothingRead(const Analysis& analysis, const CGraphData& data);
ExitCode WrongUsage(const QString& error);

} // namespace Tracelyn
