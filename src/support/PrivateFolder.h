// The folder for this user's temporary files, which nobody else can look into or prepare.
#pragma once

#include <QString>

#include <optional>

namespace support {

// Absolute, ends with a separator, exists. On Windows the user's own temporary folder; elsewhere
// "tracelyn-<uid>" below $TMPDIR or /tmp, made with mode 0700 when missing. Nothing when it cannot be made or
// when what is there cannot be trusted: a symbolic link, no folder, another owner, or rights for anyone else.
std::optional<QString> PrivateTemporaryFolder();

} // namespace support
