// A line on a terminal that tells how far a load has come.
#pragma once

#include "support/Progress.h"

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
    ~CProgressLine() {
        if (m_bShown) {
            std::fputs("\r             \r", m_pStream);
            std::fflush(m_pStream);
        }
    }

    // The part that is done, 0 to 1.
    void Show(double done) {
        if (!m_Patience.IsOver())
            return;
        m_bShown = true;
        std::fprintf(m_pStream, "\rReading %3d %%", static_cast<int>(done * 100));
        std::fflush(m_pStream);
    }

private:
    std::FILE* m_pStream;
    support::CPatience m_Patience;
    bool m_bShown = false;
};

} // namespace Tracelyn
