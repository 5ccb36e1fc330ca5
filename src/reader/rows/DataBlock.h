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

// Rows end at line feeds; those behind the last row do not count. In every row each variable takes the next
// comma-separated field; a row with too few fields starts over at its first one, fields beyond the variables
// are ignored. Splits the work over the processor cores. `valuesOfRow` is what the lines of all variables
// make of a row, which has a limit, too. Returns what is wrong when not all rows are read: the variables then
// have those before. It throws for want of memory: the variables then have all samples or none.
std::optional<QString> ReadDataBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                                     int64_t valuesOfRow, const support::Progress& progress = {});

} // namespace Tracelyn
