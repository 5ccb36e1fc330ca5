#include "native/Conversion.h"

#include <cmath>
#include <string_view>

namespace py = pybind11;

namespace Tracelyn {

namespace {

py::object ToPython(const Cell& cell) {
    struct Visitor {
        py::object operator()(NoFigure /*none*/) const { return py::none(); }
        py::object operator()(const QString& text) const { return Tracelyn::ToPython(text); }
        py::object operator()(int64_t number) const { return py::int_(number); }
        py::object operator()(double number) const {
            return std::isfinite(number) ? py::object(py::float_(number)) : py::none();
        }
        py::object operator()(bool yes) const { return py::bool_(yes); }
    };
    return std::visit(Visitor{}, cell);
}

} // namespace

void RaiseValueError(const QString& text) {
    throw py::value_error(text.toStdString());
}

py::list ToPython(std::span<const char* const> columns, std::span<const TableLine> lines) {
    py::list table;
    for (const TableLine& line : lines) {
        py::dict row;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (std::string_view(columns[i]) != "file")
                row[columns[i]] = ToPython(line[i]);
        }
        table.append(row);
    }
    return table;
}

} // namespace Tracelyn
