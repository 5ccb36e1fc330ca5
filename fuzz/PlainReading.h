// The sample rows of a document read the plain way, to compare with what the reader made of them.
#pragma once

#include <QString>

namespace Tracelyn {

class CGraphData;

// The document was read into the data without a problem, at that access level. Stops the program when a set
// differs from what the rules say about its column.
void CompareWithPlainReading(const QString& path, int accessLevel, const CGraphData& data);

} // namespace Tracelyn
