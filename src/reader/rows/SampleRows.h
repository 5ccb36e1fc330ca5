// Converts the text of sample rows into the samples of their columns.
#pragma once

#include "reader/rows/FieldBounds.h"
#include "reader/rows/FieldColumn.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>
#include <vector>

namespace Tracelyn {

// Where the samples of a column go, one for each row of the file. std::monostate: nobody shows the column.
using SampleColumn =
    std::variant<std::monostate, std::span<float>, std::span<int8_t>, std::span<uint8_t>, std::span<int16_t>,
                 std::span<uint16_t>, std::span<int32_t>, std::span<uint32_t>>;

// What a field is read as before it becomes a sample of type T: support::ParseFloatField for floats,
// support::ParseIntegerField, which saturates at 32 bits, for all others.
template <class T>
using FieldNumber = std::conditional_t<std::is_floating_point_v<T>, float, int32_t>;

// An integer keeps its low bits, as many as T has.
template <class T>
constexpr T SampleFromNumber(FieldNumber<T> number) {
    return static_cast<T>(number);
}

// A field as a number of either kind.
using FieldNumbers = std::tuple<float, int32_t>;

// Threads convert different rows into the same columns, each thread with a converter of its own.
class CRowConverter {
public:
    // Borrows the columns, of which there is at least one.
    explicit CRowConverter(std::span<const SampleColumn> columns);

    // So many bytes behind the rows must be readable, whatever they are.
    static constexpr size_t kReadableBehind = CFieldBounds::kReadableBehind;

    // Converts `count` rows, each of which ends with a line feed. `row` is the number of the first one,
    // counted from 0. Fields become numbers and samples as above. A row with fewer fields than columns starts
    // over for the remaining ones. False when there are not exactly `count` rows; no further ones are written
    // then.
    bool Convert(std::string_view rows, size_t row, size_t count);

private:
    void ConvertColumns(const char* text, size_t fieldsPerRow, size_t row, size_t count);
    const char* ConvertRow(const char* row, size_t number);
    void StartOver(std::string_view text, size_t row);

    std::span<const SampleColumn> m_Columns;
    std::vector<ColumnHabit> m_Habits; // of the columns
    CFieldBounds m_Bounds;
    std::vector<size_t> m_Stored; // numbers of the columns that are not dropped
    std::vector<FieldNumbers> m_Fields;
};

} // namespace Tracelyn
