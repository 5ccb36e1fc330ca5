// The tool's commands. Each writes its problems to the error output and returns the exit code.
#pragma once

#include "cli/ExitCode.h"
#include "cli/Options.h"
#include "reader/AnalysisFile.h"

#include <optional>

namespace Tracelyn {

ExitCode RunInfo(const Options& options);
ExitCode RunCsv(const Options& options);
ExitCode RunRender(const Options& options);
ExitCode RunPack(const Options& options);
ExitCode RunExpand(const Options& options);

// Shared by the commands.
// Reads the input that the options name, with a progress line on a terminal. Empty, with the reason printed,
// when nothing could be read at all; problems inside the file are results.
std::optional<Analysis> LoadInput(const Options& options, CGraphData& data);
void PrintError(const QString& text);
// Prints every result of the reader; says whether there was one.
ExitCode ReportResults(const Analysis& analysis);
// There are problems and no group: a file made of it would say nothing, and replace one that may say more.
bool IsNothingRead(const Analysis& analysis, const CGraphData& data);
ExitCode WrongUsage(const QString& error);

} // namespace Tracelyn
