#include "reader/csv/NumberLines.h"

#include "reader/csv/CsvFile.h"
#include "support/Assertion.h"
#include "support/FixedText.h"

#include <algorithm>

namespace Tracelyn {

namespace {

constexpr size_t kMaxFieldBytes = support::kFixedTextCapacity + kCsvLineEnd.size();
static_assert(kMaxFieldBytes >= support::kShortFieldBytes);

// So many lines that their fields fit into a core's own memory beside their text, unless a line alone does
// not.
size_t LinesAtOnce(size_t columns, size_t lines) {
    constexpr size_t kFields = 1024;
    return std::min(std::max<size_t>(kFields / std::max<size_t>(columns, 1), 1), lines);
}

} // namespace

CNumberLines::CNumberLines(std::span<const int> decimals, size_t lines)
    : m_Decimals(decimals.begin(), decimals.end()), m_nLines(lines),
      m_pText(std::make_unique_for_overwrite<char[]>(lines * decimals.size() * kMaxFieldBytes)),
      m_Fields(decimals.size(), LinesAtOnce(decimals.size(), lines)), m_HasFields(decimals.size()) {}

std::string_view CNumberLines::Format(std::span<const float> values) {
    const size_t lines = m_Decimals.empty() ? 0 : values.size() / m_Decimals.size();
    support::Assert(lines <= m_nLines, "lines <= m_nLines");
    char* end = m_pText.get();
    for (size_t first = 0; first < lines; first += m_Fields.GetRows())
        end = FormatLines(values, first, std::min(first + m_Fields.GetRows(), lines), end);
    return {m_pText.get(), end};
}

char* CNumberLines::FormatLines(std::span<const float> values, size_t first, size_t end, char* at) {
    const size_t columns = m_Decimals.size();
    const size_t lines = values.size() / columns;
    const auto separator = [&](size_t column) {
        return column + 1 < columns ? kCsvSeparator : kCsvLineEnd.front();
    };
    for (size_t column = 0; column < columns; ++column) {
        const std::span<const float> part = values.subspan(column * lines + first, end - first);
        m_HasFields[column] = m_Fields.Format(column, part, m_Decimals[column], separator(column)) ? 1 : 0;
    }
    const char* const hasFields = m_HasFields.data();
    for (size_t line = first; line < end; ++line) {
        for (size_t column = 0; column < columns; ++column) {
            if (hasFields[column] != 0) {
                at = m_Fields.Copy(column, line - first, at);
                continue;
            }
            const float value = values[column * lines + line];
            at += support::FormatFixed(std::span(at, kMaxFieldBytes), value, m_Decimals[column]).size();
            *at++ = separator(column);
        }
        at = std::ranges::copy(kCsvLineEnd.substr(1), at).out;
    }
    return at;
}

} // namespace Tracelyn
