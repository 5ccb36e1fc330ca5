// The tool's commands. Each writes its problems to the error output and returns what the tool's exit code
// tells its caller. Interrupted by Ctrl+C, each returns soon, says nothing, and writes its
// whole output or none.
#pragma once

#include "cli/Options.h"
#include "tracelyn/Recording.h"

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

// Reads the input that the options name into a model, the recording's own or another, which goes before the
// recording, with a progress line on a terminal. False, with the reason printed, when its document could not
// be read at all, and false when interrupted. Otherwise what is wrong with it are the recording's problems.
// If IsRead is false then, an output would be empty and might replace a useful one.
bool LoadInput(const Options& options, CRecording& recording, CGraphData& data);
void PrintError(const QString& text);
// Writes to the standard output. False, with the reason printed, when not everything was written.
bool PrintOutput(const QByteArray& bytes);
// Prints why nothing was read or written and returns ExitCode::Failed.
ExitCode Fail(const QString& text);
// The same for an output that cannot be written.
ExitCode FailToWrite(const QString& path, const QString& reason);
// Prints every problem that the reader found. Returns Success when there is none, else ReadWithProblems.
ExitCode ReportProblems(const CRecording& recording);
ExitCode WrongUsage(const QString& error);

} // namespace Tracelyn
