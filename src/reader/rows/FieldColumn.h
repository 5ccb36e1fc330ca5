// Converts the fields that one column takes in many rows, several at once.
#pragma once

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

// Reads the fields of a column as numbers of type T, float or int32_t: what FloatOfField or IntegerOfField
// gives.
template <class T>
class CFieldReader {
public:
    // As many are read fastest.
    static constexpr size_t kAtOnce = 64;

    explicit CFieldReader(const ColumnFields& fields) : m_Fields(fields) {}

    // At most kAtOnce numbers, from row `from` on.
    void Read(size_t from, std::span<T> numbers);

private:
    bool ReadAtOnce(size_t from, std::span<T> numbers);

    ColumnFields m_Fields;
    bool m_bLong = false; // what was read last had more than eight characters somewhere
};

} // namespace Tracelyn
