// Cuts a text that nobody would read to its end, never inside of a character.
#pragma once

#include <QString>

namespace support {

// The text itself, or at most so many of its first code units.
QString CutText(const QString& text, qsizetype most);

// The text itself, or its first limits::kMaxShownLength characters and a "…".
QString ShownText(const QString& text);

} // namespace support
