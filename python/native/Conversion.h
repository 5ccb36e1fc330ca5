// Between the values of the program and those of Python. Everything here needs the interpreter's lock.
#pragma once

#include "measure/Table.h"

#include <QString>

#include <pybind11/pybind11.h>

#include <span>
#include <string>

namespace Tracelyn {

inline pybind11::str ToPython(const QString& text) {
    return pybind11::str(text.toStdString());
}

inline QString FromPython(const std::string& text) {
    return QString::fromStdString(text);
}

// Raises ValueError with the text.
[[noreturn]] void RaiseValueError(const QString& text);

// A dict for each line, with the names of the columns as keys. A figure that the line does not have, or that
// does not exist, is None. The column "file" is left out: a recording is known by its object.
pybind11::list ToPython(std::span<const char* const> columns, std::span<const TableLine> lines);

} // namespace Tracelyn
