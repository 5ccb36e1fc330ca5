// Reads the block of sample rows into the variables of a file.
#pragma once

#include "Progress.h"

#include <QString>

#include <optional>
#include <span>

namespace Tracelyn {

class CSampleText;
class TypedDataBase;

// Rows end at line feeds; those behind the last row do not count. In every row each variable takes the next
// comma-separated field; a row with too few fields starts over at its first one, fields beyond the variables
// are ignored. Splits the work over the processor cores. Returns what is wrong when not all rows are read:
// the variables then have those before. What it throws, for want of memory, leaves them as they were.
std::optional<QString> ReadDataBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                                     const support::Progress& progress = {});

} // namespace Tracelyn
