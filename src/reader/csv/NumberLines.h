// Lines of numbers as a CSV file has them, put together fast.
#pragma once

#include "support/ShortFields.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace Tracelyn {

// The text is put together in memory that is used again.
class CNumberLines {
public:
    // Takes the memory for so many lines. `decimals` has one entry for each column.
    CNumberLines(std::span<const int> decimals, size_t lines);

    // The text that CCsvFile::WriteNumberField and EndLine write for these values, valid until the next call.
    // `values` has the first column's rows, then the second's, and so on; more lines than there is memory for
    // are a programming error.
    std::string_view Format(std::span<const float> values);

private:
    char* FormatLines(std::span<const float> values, size_t first, size_t end, char* at);

    std::vector<int> m_Decimals;
    size_t m_nLines;
    std::unique_ptr<char[]> m_pText;
    support::CShortFields m_Fields;
    std::vector<char> m_HasFields; // for each column
};

} // namespace Tracelyn
