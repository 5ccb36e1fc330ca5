// The tool's commands. Each writes its problems to the error output and returns the exit code.
#pragma once

#include "cli/Analysis.h"
#include "cli/ExitCode.h"
#include "cli/Options.h"

namespace Tracelyn {

ExitCode RunInfo(const Options& options);
ExitCode RunCsv(const Options& options);
ExitCode RunRender(const Options& options);
ExitCode RunPack(const Options& options);
ExitCode RunExpand(const Options& options);

// Shared by the commands.
void PrintError(const QString& text);
// Prints every result of the reader; says whether there was one.
ExitCode ReportResults(const Analysis& analysis);
// There are problems and no group: a file made of it would say nothing, and replace one that may say more.
bool IsNothingRead(const Analysis& analysis, const CGraphData& data);
ExitCode WrongUsage(const QString& error);

} // namespace Tracelyn
