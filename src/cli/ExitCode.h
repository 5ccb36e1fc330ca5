// What the tool's exit code tells its caller.
#pragma once

namespace Tracelyn {

enum class ExitCode : int {
    Success = 0,
    // Nothing was read or written.
    Failed = 1,
    WrongUsage = 2,
    // The file was read with problems; the output is written all the same.
    ReadWithProblems = 3,
};

} // namespace Tracelyn
