// The columns of a table of short numbers, byte for byte as FormatFixed writes them, several numbers at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace support {

// Whether this processor has a fast way.
#ifdef __SSE2__
inline constexpr bool kHasShortFields = true;
#else
inline constexpr bool kHasShortFields = false;
#endif

// What a field takes in memory: a sign, thirteen digits, a point and the separator behind it fit into it.
inline constexpr size_t kShortFieldBytes = 16;

// The fields of some rows of a table, in memory that is used again.
class CShortFields {
public:
    // Takes the memory for so many columns of so many rows.
    CShortFields(size_t columns, size_t rows);

    // As many as it was given, rounded up to a multiple of four.
    size_t GetRows() const { return m_nRows; }

    // Makes the fields of a column from at most GetRows() values, each with the separator behind it; more
    // values are a programming error. Decimals as FormatFixed takes them. False when a value might have more
    // than thirteen digits, decimals included, or is no number, when there are more than six decimals, or
    // without kHasShortFields; the column has no fields then.
    bool Format(size_t column, std::span<const float> values, int precision, char separator);

    // Copies a field to where kShortFieldBytes may be overwritten, and returns the field's end there. Only
    // for columns that have fields.
    char* Copy(size_t column, size_t row, char* target) const {
        const size_t at = column * m_nRows + row;
        const size_t begin = m_Begins[at];
        std::memcpy(target, m_Fields.get() + at * kShortFieldBytes + begin, kShortFieldBytes);
        return target + (kShortFieldBytes - begin);
    }

private:
    size_t m_nRows;
    std::unique_ptr<char[]> m_Fields;    // column by column, each one at the end of its bytes
    std::unique_ptr<uint8_t[]> m_Begins; // where each one begins in its bytes
};

} // namespace support
