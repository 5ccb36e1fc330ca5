// Writes the model as a CSV file.
#pragma once

#include "support/Progress.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace Tracelyn {

class CGraphData;
class CCsvFile;

enum class ExportEnd {
    Complete,
    Stopped,  // as the progress asked; a part of the table is written
    TooLarge, // the table is beyond support/Limits.h; nothing is written
};

// Writes two tables into the open file and leaves it open: first the names and values of the reference lines,
// then, after an empty line, a column of scaled values for each other signal, in the order in which the
// groups list them. All columns are as long as the longest signal; a shorter one repeats its last sample.
// Throws CFileException when writing fails.
ExportEnd ExportCsv(const CGraphData& data, CCsvFile& file, const support::Progress& progress = {});

// Lines of numbers, put together in memory that is used again.
class CNumberLines {
public:
    // Takes the memory for so many numbers.
    explicit CNumberLines(size_t numbers);

    // The text that CCsvFile::WriteNumberField and EndLine write for them, valid until the next call.
    // `decimals` has one entry for each column; `values` has the first column's rows, then the second's, and
    // so on.
    std::string_view Format(std::span<const float> values, std::span<const int> decimals);

private:
    size_t m_nCapacity;
    std::unique_ptr<char[]> m_pText;
};

} // namespace Tracelyn
