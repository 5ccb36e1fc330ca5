// Makes failed expectations show Qt's texts as texts.
#pragma once

#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
