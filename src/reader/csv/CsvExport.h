// Writes the model as a CSV file.
#pragma once

#include "support/Progress.h"

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

} // namespace Tracelyn
