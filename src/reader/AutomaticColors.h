// The colours that sets get when the file names none: two palettes, one for on/off signals, restarted in
// every group.
#pragma once

#include "model/GraphDataSet.h"

#include <cstddef>

namespace Tracelyn {

class AutomaticColors {
public:
    void Restart() { *this = {}; }
    ColorRef NextOrdinary();
    ColorRef NextBinary();

private:
    size_t m_nOrdinary = 0;
    size_t m_nBinary = 0;
};

} // namespace Tracelyn
