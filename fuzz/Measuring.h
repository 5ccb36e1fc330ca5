// The figures of the signals against a plain loop.
#pragma once

namespace Tracelyn {

class CGraphData;

// Measures every shown signal from one sample to another, which may be any. Stops the program when a figure
// is wrong or when the index gives another.
void CheckMeasures(const CGraphData& data, int from, int to);

} // namespace Tracelyn
