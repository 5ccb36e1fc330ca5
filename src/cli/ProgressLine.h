// A line on a terminal that tells how far a load has come.
#pragma once

#include "support/Patience.h"

#include <cstdio>

namespace Tracelyn {

// Appears when the load takes long and is wiped by the destructor.
class CProgressLine {
public:
    // Borrows the stream.
    explicit CProgressLine(std::FILE* stream,
                           std::chrono::milliseconds patience = support::CPatience::kDefault)
        : m_pStream(stream), m_Patience(patience) {}
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;
    ~CProgressLine();

    // The part that is done, 0 to 1.
    void Show(double done);

private:
    std::FILE* m_pStream;
    support::CPatience m_Patience;
    bool m_bShown = false;
};

} // namespace Tracelyn
