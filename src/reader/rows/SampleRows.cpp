#include "reader/rows/SampleRows.h"

#include "reader/rows/FieldColumn.h"
#include "reader/rows/FieldNumber.h"
#include "support/Limits.h"
#include "support/NumberText.h"

#include <algorithm>
#include <array>

namespace Tracelyn {

namespace {

// Fewer rows are converted one after the other: what columns are prepared for costs more than it saves.
constexpr size_t kFewestRows = 8;

const char* FindFieldEnd(const char* at) {
    while (*at != ',' && *at != '\n')
        ++at;
    return at;
}

template <class T>
T SampleOfField(const char* begin, const char* end) {
    if constexpr (std::is_floating_point_v<T>)
        return FloatOfField(begin, end);
    else
        return SampleFromNumber<T>(IntegerOfField(begin, end));
}

// A number may be followed by the carriage return of its row's end.
const char* WithoutReturn(const char* begin, const char* end) {
    return end != begin && end[-1] == '\r' ? end - 1 : end;
}

template <class T>
void ConvertFields(const ColumnFields& fields, ColumnHabit& habit, std::span<T> samples) {
    using Number = FieldNumber<T>;
    constexpr size_t kAtOnce = CFieldReader<Number>::kAtOnce;
    CFieldReader<Number> reader(fields, habit);
    for (size_t from = 0; from < samples.size(); from += kAtOnce) {
        const auto some = samples.subspan(from, std::min(samples.size() - from, kAtOnce));
        if constexpr (std::is_same_v<T, Number>) {
            reader.Read(from, some);
        } else {
            std::array<Number, kAtOnce> numbers;
            reader.Read(from, std::span(numbers).first(some.size()));
            std::transform(numbers.data(), numbers.data() + some.size(), some.begin(), SampleFromNumber<T>);
        }
    }
}

template <class T>
void Put(std::span<T> column, size_t row, const FieldNumbers& numbers) {
    column[row] = SampleFromNumber<T>(std::get<FieldNumber<T>>(numbers));
}

void Put(std::monostate /*dropped*/, size_t /*row*/, const FieldNumbers& /*numbers*/) {}

} // namespace

CRowConverter::CRowConverter(std::span<const SampleColumn> columns)
    : m_Columns(columns), m_Habits(columns.size()) {
    for (size_t column = 0; column < columns.size(); ++column) {
        if (!std::holds_alternative<std::monostate>(columns[column]))
            m_Stored.push_back(column);
    }
}

bool CRowConverter::Convert(std::string_view rows, size_t row, size_t count) {
    const size_t last = row + count;
    while (!rows.empty() && row != last) {
        size_t length = m_Bounds.Find(rows.substr(0, CFieldBounds::kMaxBytes));
        const size_t found = std::min(m_Bounds.GetRows(), last - row);
        const size_t fields = m_Bounds.GetFieldsPerRow();
        if (fields >= m_Columns.size() && found == m_Bounds.GetRows() && found >= kFewestRows) {
            ConvertColumns(rows.data(), fields, row, found);
            row += found;
        } else {
            // At least one row, which may be longer than what the bounds are found of.
            const char* at = rows.data();
            do
                at = ConvertRow(at, row++);
            while (row != last && at < rows.data() + length);
            length = static_cast<size_t>(at - rows.data());
        }
        rows.remove_prefix(length);
    }
    return rows.empty() && row == last;
}

// Of rows that have as many fields each, no fewer than there are columns.
void CRowConverter::ConvertColumns(const char* text, size_t fieldsPerRow, size_t row, size_t count) {
    for (size_t column = 0; column < m_Columns.size(); ++column) {
        const bool hasReturns = column + 1 == fieldsPerRow && m_Bounds.AllHaveReturns();
        const ColumnFields fields{text, m_Bounds.GetBegins() + column, fieldsPerRow,
                                  hasReturns ? size_t{2} : 1};
        std::visit(
            [&](auto samples) {
                if constexpr (!std::is_same_v<decltype(samples), std::monostate>)
                    ConvertFields(fields, m_Habits[column], samples.subspan(row, count));
            },
            m_Columns[column]);
    }
}

// Returns where the next row begins.
const char* CRowConverter::ConvertRow(const char* const row, size_t number) {
    const char* begin = row;
    for (size_t column = 0; column < m_Columns.size(); ++column) {
        const char* const end = FindFieldEnd(begin);
        std::visit(
            [&](auto samples) {
                if constexpr (!std::is_same_v<decltype(samples), std::monostate>)
                    samples[number] = SampleOfField<typename decltype(samples)::value_type>(
                        begin, WithoutReturn(begin, end));
            },
            m_Columns[column]);
        begin = end + 1;
        if (*end == '\n') {
            if (column + 1 < m_Columns.size())
                StartOver({row, end}, number);
            return begin;
        }
    }
    while (*begin != '\n')
        ++begin;
    return begin + 1;
}

// Fills the columns that the row's own fields did not reach. Each field becomes a number just once, however
// many columns take it.
void CRowConverter::StartOver(std::string_view text, size_t row) {
    m_Fields.clear();
    for (size_t from = 0;;) {
        const size_t comma = text.find(',', from);
        const std::string_view field =
            text.substr(from, std::min(comma - from, support::limits::kMaxFieldBytes));
        if (field.empty()) // most of a file that means harm
            m_Fields.push_back({});
        else
            m_Fields.push_back({support::ParseFloatField(field), support::ParseIntegerField(field)});
        if (comma == std::string_view::npos)
            break;
        from = comma + 1;
    }
    const size_t fields = m_Fields.size();
    for (auto column = std::ranges::lower_bound(m_Stored, fields); column != m_Stored.end(); ++column)
        std::visit([&](auto samples) { Put(samples, row, m_Fields[*column % fields]); }, m_Columns[*column]);
}

} // namespace Tracelyn
