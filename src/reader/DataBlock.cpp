#include "DataBlock.h"

#include "XmlVariable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

namespace Tracelyn {

namespace {

// Rows are cut into fields some at a time, so that each column is converted in one call.
constexpr size_t kMaximumRowsAtOnce = 512;
constexpr size_t kFieldsAtOnce = size_t{1} << 16U;

// Far longer than any number; a longer field is cut here, so that a row that starts over again and again
// costs little.
constexpr size_t kMaximumField = 4096;

// Samples may take this many times the size of their text. Empty rows for many variables could ask for far
// more.
constexpr uint64_t kMaximumSamplesPerCharacter = 64;
constexpr uint64_t kSamplesOfAnyFile = 1 << 24;

std::string_view WithoutTrailingLineFeeds(std::string_view text) {
    const size_t last = text.find_last_not_of('\n');
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

int CountRows(std::string_view text) {
    const auto rows = std::ranges::count(text, '\n') + 1;
    return static_cast<int>(std::min<ptrdiff_t>(rows, std::numeric_limits<int>::max()));
}

void CheckSampleCount(std::string_view text, int rows, std::span<TypedDataBase* const> variables) {
    const auto stored = static_cast<uint64_t>(std::ranges::count_if(variables, &TypedDataBase::HasStore));
    const uint64_t samples = stored * static_cast<uint64_t>(rows);
    if (samples > kSamplesOfAnyFile && samples / kMaximumSamplesPerCharacter > text.size())
        throw std::length_error("more samples than the text can justify");
}

// Fields of some rows, column by column.
class FieldTable {
public:
    explicit FieldTable(size_t columns)
        : m_Columns(columns), m_nCapacity(std::clamp<size_t>(kFieldsAtOnce / columns, 1, kMaximumRowsAtOnce)),
          m_Fields(columns * m_nCapacity) {}

    bool IsFull() const { return m_Rows == m_nCapacity; }

    void AddRow(std::string_view row) {
        size_t column = 0;
        for (size_t from = 0; column < m_Columns;) {
            const size_t comma = row.find(',', from);
            At(column++) = row.substr(from, std::min(comma - from, kMaximumField));
            if (comma == std::string_view::npos)
                break;
            from = comma + 1;
        }
        // The row starts over for the remaining columns.
        for (const size_t fields = column; column < m_Columns; ++column)
            At(column) = At(column - fields);
        ++m_Rows;
    }

    void MoveTo(std::span<TypedDataBase* const> variables) {
        for (size_t column = 0; column < m_Columns; ++column)
            variables[column]->AddValues(std::span(m_Fields).subspan(column * m_nCapacity, m_Rows));
        m_Rows = 0;
    }

private:
    // The column's field in the row that is being added.
    std::string_view& At(size_t column) { return m_Fields[column * m_nCapacity + m_Rows]; }

    size_t m_Columns;
    size_t m_nCapacity;
    std::vector<std::string_view> m_Fields;
    size_t m_Rows = 0;
};

} // namespace

void ReadDataBlock(std::string_view text, std::span<TypedDataBase* const> variables) {
    while (!variables.empty() && !variables.back()->HasStore())
        variables = variables.first(variables.size() - 1);
    if (variables.empty())
        return;

    text = WithoutTrailingLineFeeds(text);
    const int rows = CountRows(text);
    CheckSampleCount(text, rows, variables);
    for (TypedDataBase* const variable : variables)
        variable->Reserve(rows);

    FieldTable table(variables.size());
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        table.AddRow(text.substr(start, end - start));
        if (table.IsFull())
            table.MoveTo(variables);
        start = end + 1;
    }
    table.MoveTo(variables);
}

} // namespace Tracelyn
