// Converts the fields that one column takes in many rows, several at once.
#pragma once

#include "reader/rows/FieldWords.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace Tracelyn {

// Where the fields are: in rows with the same number of fields each.
struct ColumnFields {
    const char* text;       // CFieldBounds::kReadableBehind bytes behind the rows are readable
    const uint16_t* begins; // see CFieldBounds; of the column's field in the first row
    size_t fieldsPerRow;
    size_t endBytes; // from the end of a field to the beginning of the next one
};

// What the fields of a column that were read last were like. It speeds up those that are like them.
struct ColumnHabit {
    bool isLong = false;   // some had more than eight characters, the sign not counted
    bool isSigned = false; // some had a minus sign
    size_t decimals = 0;   // of each, if all have a point; 0 when they differ or it is not known
    bool differs = false;  // their decimals differed before
};

// Reads the fields of a column as numbers of type T, float or int32_t: what FloatOfField or IntegerOfField
// gives.
template <class T>
class CFieldReader {
public:
    // As many are read fastest.
    static constexpr size_t kAtOnce = FieldWords::kAtOnce;

    CFieldReader(const ColumnFields& fields, ColumnHabit& habit) : m_Fields(fields), m_Habit(habit) {}

    // At most kAtOnce numbers, from row `from` on.
    void Read(size_t from, std::span<T> numbers);

private:
    bool ReadAtOnce(size_t from, std::span<T> numbers);

    ColumnFields m_Fields;
    ColumnHabit& m_Habit;
};

} // namespace Tracelyn
