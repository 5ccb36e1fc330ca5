#include "reader/rows/SampleRows.h"

#include "support/Limits.h"
#include "support/NumberText.h"

#include <algorithm>
#include <array>

namespace Tracelyn {

namespace {

constexpr bool EndsField(char c) {
    return c == ',' || c == '\n' || c == '\r';
}

// A carriage return may stand before a number, too, as any white space may.
constexpr bool IsEmptyField(char first) {
    return first == ',' || first == '\n';
}

const char* FindFieldEnd(const char* at) {
    while (*at != ',' && *at != '\n')
        ++at;
    return at;
}

std::string_view FieldAt(const char* at) {
    const auto length = static_cast<size_t>(FindFieldEnd(at) - at);
    return {at, std::min(length, support::limits::kMaxFieldBytes)};
}

// A run of decimal digits and where it ends; the value counts for as many digits as it can hold.
struct Digits {
    uint64_t value;
    const char* end;
};

Digits ReadDigits(const char* at, uint64_t value) {
    for (;; ++at) {
        const auto digit = static_cast<unsigned>(*at) - '0';
        if (digit > 9)
            return {value, at};
        value = value * 10 + digit;
    }
}

// Powers of ten that double holds exactly, as it does integers of that many digits: their quotient is then
// the double nearest to the written number.
constexpr size_t kExactDigits = 15;
constexpr std::array<double, kExactDigits + 1> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Both read the field at `at` and return where it ends. Plain decimals need no more than their digits;
// whatever else stands there goes the general way.
const char* Read(const char* at, float& sample) {
    const bool negative = *at == '-';
    const char* const start = at + (negative ? 1 : 0);
    Digits digits = ReadDigits(start, 0);
    auto count = static_cast<size_t>(digits.end - start);
    size_t decimals = 0;
    if (*digits.end == '.') {
        const char* const point = digits.end;
        digits = ReadDigits(point + 1, digits.value);
        decimals = static_cast<size_t>(digits.end - point - 1);
        count += decimals;
    }
    if (count - 1 >= kExactDigits || !EndsField(*digits.end)) {
        sample = IsEmptyField(*at) ? 0.0F : support::ParseFloatField(FieldAt(at));
        return FindFieldEnd(digits.end);
    }
    const double value = static_cast<double>(digits.value) / kPowersOfTen[decimals];
    sample = static_cast<float>(negative ? -value : value);
    return digits.end;
}

const char* Read(const char* at, int32_t& sample) {
    const bool negative = *at == '-';
    const char* const start = at + (negative ? 1 : 0);
    const Digits digits = ReadDigits(start, 0);
    const auto count = static_cast<size_t>(digits.end - start);
    constexpr size_t kSafeDigits = 9;
    if (count - 1 >= kSafeDigits || !EndsField(*digits.end)) {
        sample = IsEmptyField(*at) ? 0 : support::ParseIntegerField(FieldAt(at));
        return FindFieldEnd(digits.end);
    }
    const auto value = static_cast<int32_t>(digits.value);
    sample = negative ? -value : value;
    return digits.end;
}

template <class T>
const char* ReadInto(std::span<T> column, size_t row, const char* at) {
    FieldNumber<T> number{};
    at = Read(at, number);
    column[row] = SampleFromNumber<T>(number);
    return at;
}

const char* ReadInto(std::monostate /*dropped*/, size_t /*row*/, const char* at) {
    return FindFieldEnd(at);
}

template <class T>
void Put(std::span<T> column, size_t row, const FieldNumbers& numbers) {
    column[row] = SampleFromNumber<T>(std::get<FieldNumber<T>>(numbers));
}

void Put(std::monostate /*dropped*/, size_t /*row*/, const FieldNumbers& /*numbers*/) {}

} // namespace

CRowConverter::CRowConverter(std::span<const SampleColumn> columns) : m_Columns(columns) {
    for (size_t column = 0; column < columns.size(); ++column) {
        if (!std::holds_alternative<std::monostate>(columns[column]))
            m_Stored.push_back(column);
    }
}

bool CRowConverter::Convert(std::string_view rows, size_t row, size_t count) {
    const char* at = rows.data();
    const char* const end = at + rows.size();
    const size_t last = row + count;
    for (; at != end && row != last; ++row)
        at = ConvertRow(at, row);
    return at == end && row == last;
}

// Returns where the next row begins.
const char* CRowConverter::ConvertRow(const char* const begin, size_t row) {
    const char* at = begin;
    for (size_t column = 0;; ++at) {
        at = std::visit([=](auto samples) { return ReadInto(samples, row, at); }, m_Columns[column]);
        if (*at == '\r')
            at = FindFieldEnd(at);
        ++column;
        if (*at == '\n') {
            if (column < m_Columns.size())
                StartOver({begin, at}, row);
            return at + 1;
        }
        if (column == m_Columns.size())
            break;
    }
    while (*at != '\n')
        ++at;
    return at + 1;
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
