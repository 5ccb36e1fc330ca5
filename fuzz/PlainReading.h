// The sample rows of a document read the plain way, to compare with what the reader made of them. The fuzzers
// and the tests of the reader do so.
#pragma once

#include <QString>

#include <string>

namespace Tracelyn {

class CGraphData;

// The document was read into the data without a problem, at that access level. Gives the promise that does
// not hold when a set differs from what the rules say about its column, and nothing otherwise.
std::string DifferenceFromPlainReading(const QString& path, int accessLevel, const CGraphData& data);

} // namespace Tracelyn
