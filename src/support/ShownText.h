// Cuts a text that nobody would read to its end.
#pragma once

#include <QString>

namespace support {

// The text itself, or its first limits::kMaxShownLength characters and a "…".
QString ShownText(const QString& text);

} // namespace support
