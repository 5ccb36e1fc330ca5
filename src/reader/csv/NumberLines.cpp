#include "reader/csv/NumberLines.h"

#include "support/FixedText.h"

namespace Tracelyn {

namespace {

constexpr char kSeparator = ',';
constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kLongestField = support::FixedTextCapacity + kLineEnd.size();

} // namespace

CNumberLines::CNumberLines(size_t numbers)
    : m_nCapacity(numbers * kLongestField), m_pText(std::make_unique_for_overwrite<char[]>(m_nCapacity)) {}

std::string_view CNumberLines::Format(std::span<const float> values, std::span<const int> decimals) {
    const std::span<char> text(m_pText.get(), m_nCapacity);
    const size_t rows = decimals.empty() ? 0 : values.size() / decimals.size();
    size_t size = 0;
    for (size_t row = 0; row < rows; ++row) {
        for (size_t column = 0; column < decimals.size(); ++column) {
            if (column != 0)
                text[size++] = kSeparator;
            const float value = values[column * rows + row];
            size += support::FormatFixed(text.subspan(size), value, decimals[column]).size();
        }
        size += kLineEnd.copy(&text[size], kLineEnd.size());
    }
    return {text.data(), size};
}

} // namespace Tracelyn
