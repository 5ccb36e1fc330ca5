// Where an entry of a container may be written.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Tracelyn {

// Target folder + stored name as they are, with every missing folder made. Nothing when the result is not
// absolute (on Windows with a drive letter), when a folder cannot be made, or when the name could lead
// elsewhere: "..", a drive or stream, a name that means a device or another file on Windows, a folder below
// the target that is a link. Both kinds of slashes separate folders. The answer is the same on every system.
std::optional<QString> PrepareEntryPath(const QString& targetFolder, const QByteArray& storedName);

} // namespace Tracelyn
