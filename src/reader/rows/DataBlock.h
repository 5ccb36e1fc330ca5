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

// The problem of a load that was stopped before it knew how many rows there are.
inline const QString kStoppedBeforeRows = QStringLiteral("Loading was stopped after 0 sample rows");

// A row ends at a line feed; line feeds behind the last row are ignored. In every row each variable takes the
// next comma-separated field. When a row has fewer fields than there are variables, the remaining variables
// take its fields again from the first one; when it has more, the further fields are ignored.
//
// At most as many rows are read as support/Limits.h allows.
//
// Returns nothing when all rows were read, else what is wrong; the variables then have the rows before. Asked
// to stop, it keeps the rows that are converted by then and says how many.
// Throws std::bad_alloc when memory runs out; each variable then has all of its samples or none. Works on
// several threads, reports progress on the calling one.
std::optional<QString> ReadDataBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                                     const support::Progress& progress = {});

// The same for a long text that is not checked: looks at each part only once, while it converts it. Returns
// false, with variables that have no samples, when the text must be checked first: it is not plain, has more
// rows than parts of it let expect, or these ask for too much memory.
bool ReadUncheckedBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                        const support::Progress& progress, std::optional<QString>& problem);

} // namespace Tracelyn
