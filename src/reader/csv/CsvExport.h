// Writes the model as a CSV file.
#pragma once

namespace Tracelyn {

class CGraphData;
class CCsvFile;

// Two tables into the open file: names and values of the fixed sets, then, after an empty line, one column of
// scaled values for each other set, in the order in which the groups list them. A set shorter than the
// longest is asked for every row. Does not close the file; throws CFileException on a write error.
void ExportCsv(const CGraphData& data, CCsvFile& file);

} // namespace Tracelyn
