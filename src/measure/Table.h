// A table of figures as text: aligned for people, as CSV, or as JSON.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <span>
#include <variant>
#include <vector>

namespace Tracelyn {

enum class TableFormat { Table, Csv, Json };

// A figure that this line does not have: JSON leaves it out.
struct NoFigure {};
// One that does not exist, such as the mean of no sample, is a number that is not finite: null in JSON, and
// an empty field elsewhere.
using Cell = std::variant<NoFigure, QString, int64_t, double, bool>;

// A line has a cell for each column.
using TableLine = std::vector<Cell>;

// The whole text, in UTF-8. JSON: an array with an object for each line; its keys are the names of the
// columns. CSV: a line with the names, then one for each line; CR LF ends each, and fields are quoted where
// they must be (RFC 4180). In both, a number reads back as the same one, whatever the locale. For people,
// numbers have seven digits.
QByteArray TableText(std::span<const char* const> columns, std::span<const TableLine> lines,
                     TableFormat format);

} // namespace Tracelyn
