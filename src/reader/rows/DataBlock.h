// Reads the block of sample rows into the variables of a file.
#pragma once

#include "support/Progress.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <span>

namespace Tracelyn {

class CSampleText;
class TypedDataBase;

// A row ends at a line feed; line feeds behind the last row are ignored. In every row each variable takes the
// next comma-separated field. When a row has fewer fields than there are variables, the remaining variables
// take its fields again from the first one; when it has more, the further fields are ignored.
//
// `valuesOfRow` counts the values that a row has in a table of all lines: one for each line, or
// limits::kValuesPerSlowValue for a line of many decimals. At most as many rows are read as support/Limits.h
// allows.
//
// Returns nothing when all rows were read, else what is wrong; the variables then have the rows before.
// Throws std::bad_alloc when memory runs out; each variable then has all of its samples or none. Works on
// several threads, reports progress on the calling one.
std::optional<QString> ReadDataBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                                     int64_t valuesOfRow, const support::Progress& progress = {});

} // namespace Tracelyn
