// Some fields of a column as words of eight characters, side by side.
#pragma once

#include "reader/rows/FieldNumber.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Tracelyn {

struct ColumnFields;

// The values of the fields' characters; the last character of a field is the highest byte. A minus sign is
// not among them. The fields behind the last one, up to a multiple of four, have the last one's characters
// and no sign.
struct FieldWords {
    // The most fields.
    static constexpr size_t kAtOnce = 64;

    alignas(16) std::array<field::Word, kAtOnce> low;  // the last eight characters
    alignas(16) std::array<field::Word, kAtOnce> high; // those before
    alignas(16) std::array<uint32_t, kAtOnce> signs;   // the highest bit is set behind a minus sign
};

// Loads `count` fields, from row `from` on, that may have `most` characters and are expected to be longer
// than a word or not. Returns a length that no field exceeds, too much for any number when one is empty.
// `high` has a meaning when that is longer than a word. Unless withSigns, a minus sign is a character like
// others.
template <bool withSigns>
size_t LoadFields(bool isLong, size_t most, const ColumnFields& fields, size_t from, size_t count,
                  FieldWords& words);

} // namespace Tracelyn
