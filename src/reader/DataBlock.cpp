#include "DataBlock.h"

#include "XmlVariable.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace Tracelyn {

namespace {

// Rows are cut into fields some at a time, so that each column is converted in one call.
constexpr size_t kRowsAtOnce = 512;

std::string_view WithoutTrailingLineFeeds(std::string_view text) {
    const size_t last = text.find_last_not_of('\n');
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

int CountRows(std::string_view text) {
    const auto rows = std::ranges::count(text, '\n') + 1;
    return static_cast<int>(std::min<ptrdiff_t>(rows, std::numeric_limits<int>::max()));
}

// Fields of some rows, column by column.
class FieldTable {
public:
    explicit FieldTable(size_t columns) : m_Columns(columns), m_Fields(columns * kRowsAtOnce) {}

    bool IsFull() const { return m_Rows == kRowsAtOnce; }

    void AddRow(std::string_view row) {
        size_t from = 0;
        for (size_t column = 0; column < m_Columns; ++column) {
            const size_t comma = row.find(',', from);
            m_Fields[column * kRowsAtOnce + m_Rows] = row.substr(from, comma - from);
            from = comma == std::string_view::npos ? 0 : comma + 1;
        }
        ++m_Rows;
    }

    void MoveTo(std::span<TypedDataBase* const> variables) {
        for (size_t column = 0; column < m_Columns; ++column)
            variables[column]->AddValues(std::span(m_Fields).subspan(column * kRowsAtOnce, m_Rows));
        m_Rows = 0;
    }

private:
    size_t m_Columns;
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
