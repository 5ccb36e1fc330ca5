// Lines of comma-separated numbers, put together in memory that is used again.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace Tracelyn {

class CNumberLines {
public:
    // Has room for so many numbers.
    explicit CNumberLines(size_t numbers);

    // The text that CCsvFile::WriteNumberField and EndLine write for them, valid until the next call.
    // `decimals` names the columns; `values` holds the first column's rows, then the second's, and so on.
    std::string_view Format(std::span<const float> values, std::span<const int> decimals);

private:
    size_t m_nCapacity;
    std::unique_ptr<char[]> m_pText;
};

} // namespace Tracelyn
