// A line on a terminal that tells how far a long operation has come.
#pragma once

#include "support/Progress.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace Tracelyn {

// Appears when the operation takes long and is wiped by the destructor.
class CProgressLine {
public:
    // Borrows the stream. `action` is what is done, such as "Reading".
    explicit CProgressLine(std::FILE* stream, std::string_view action = "Reading",
                           std::chrono::milliseconds patience = support::CPatience::kDefault)
        : m_pStream(stream), m_strAction(action), m_Patience(patience) {}
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;
    ~CProgressLine() {
        if (m_bShown) {
            std::fprintf(m_pStream, "\r%s\r", std::string(m_strAction.size() + kPartLength, ' ').c_str());
            std::fflush(m_pStream);
        }
    }

    // The part that is done, 0 to 1.
    void Show(double done) {
        if (!m_Patience.IsOver())
            return;
        m_bShown = true;
        std::fprintf(m_pStream, "\r%s %3d %%", m_strAction.c_str(), static_cast<int>(done * 100));
        std::fflush(m_pStream);
    }

private:
    static constexpr size_t kPartLength = 6; // of " 100 %"

    std::FILE* m_pStream;
    std::string m_strAction;
    support::CPatience m_Patience;
    bool m_bShown = false;
};

} // namespace Tracelyn
