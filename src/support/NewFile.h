// Files under names that nothing has yet: they appear whole, and nothing is ever replaced.
#pragma once

#include <QString>

class QTemporaryFile;

namespace support {

// Copies a file with its permissions. `to` appears when the copy is complete. False, and nothing is left
// behind, when something has that name, also since a moment ago, or when anything fails.
bool CopyToNewFile(const QString& from, const QString& to);

// The ways of giving a finished file its name, the best first. Which of them work is up to the file system.
enum class Placing { Done, NameExists, Unsupported };
Placing PlaceByLink(QTemporaryFile& file, const QString& to);
Placing PlaceByRename(QTemporaryFile& file, const QString& to);
// The only one that shows the name while the file grows, so that a killed process leaves a part of it.
Placing PlaceByCopy(QTemporaryFile& file, const QString& to);

} // namespace support
