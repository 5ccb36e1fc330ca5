// Converts fields that are loaded as words into numbers, four at once and without a branch on their digits.
#pragma once

#include "reader/rows/FieldWords.h"

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__

namespace Tracelyn {

// The caller has made sure that no field is empty or too long: none of more than eight characters, or of more
// than 15 where isLong.

// These functions convert `count` fields, rounded up to a multiple of four. They return false, and the
// numbers have no meaning, when any field is no plain decimal.
bool ReadNumbers(const FieldWords& words, size_t count, bool isLong, float* numbers);
bool ReadNumbers(const FieldWords& words, size_t count, int32_t* numbers);

// The same, and false as well when a field has another number of decimals, which are 1 to 7. It is
// faster, since it is known where the points are.
bool ReadNumbers(const FieldWords& words, size_t count, bool isLong, size_t decimals, float* numbers);

} // namespace Tracelyn

#endif
