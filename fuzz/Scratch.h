// The fuzzer's own folder for files, one for each process.
#pragma once

#include <QString>

#include <string_view>

namespace Tracelyn {

// Ends with a separator; empty when it is first asked for. It stays behind when the process is stopped, below
// the temporary folder of the environment.
const QString& ScratchFolder();

// Replaces the file's contents.
void WriteFile(const QString& path, std::string_view bytes);

} // namespace Tracelyn
