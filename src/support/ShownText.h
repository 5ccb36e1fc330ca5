// What is shown of a text that nobody would read to its end.
#pragma once

#include <QString>

namespace support {

// The text, or its beginning and three dots.
QString ShownText(const QString& text);

} // namespace support
