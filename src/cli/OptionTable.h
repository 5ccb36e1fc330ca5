// All that the parser of the command line and the usage know of the commands.
#pragma once

#include "cli/Options.h"

#include <span>

namespace Tracelyn {

struct OptionEntry {
    const char* name;
    const char* value; // as the usage names it; null for an option without one
    bool isRepeatable;
    // Takes one given value. False when it is not allowed.
    bool (*read)(const QString& text, Options& options);
};

struct CommandEntry {
    const char* name;
    Command command;
    std::span<const OptionEntry> options;
    // As the usage names them. When the last name ends with "...", there may be more of it.
    std::span<const char* const> files;
    // Of a command that may write an output for each of any number of files: the option that names the folder
    // of the outputs, then those that only count with it.
    std::span<const OptionEntry> folderOptions = {};
};

std::span<const CommandEntry> AllCommands();

} // namespace Tracelyn
