// What a picture shows on request.
#pragma once

#include <unordered_map>

namespace Tracelyn {

class CGraphDataSet;

// What the picture shows beside one sample for each pixel column of the recording, or leaves out.
struct PlotOptions {
    bool everyEvent = false;
    bool console = true;
    // A second recording, drawn dimmed behind the first: the signals of that one and those that stand for
    // them in the second. Sample i of the second stands at sample i + shift of the first.
    std::unordered_map<const CGraphDataSet*, const CGraphDataSet*> behind;
    int shift = 0;
};

} // namespace Tracelyn
