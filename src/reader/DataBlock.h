// The block of sample rows: one row a line, fields separated by commas.
#pragma once

#include <span>
#include <string_view>

namespace Tracelyn {

class TypedDataBase;

// Hands every row's fields to the variables in their order. A row with fewer fields than variables starts
// over at its first field; surplus fields are ignored. Trailing line feeds add no rows; a carriage return
// stays in its field. Throws std::length_error, before it reserves anything, when a text asks for far more
// samples than it has characters.
void ReadDataBlock(std::string_view text, std::span<TypedDataBase* const> variables);

} // namespace Tracelyn
