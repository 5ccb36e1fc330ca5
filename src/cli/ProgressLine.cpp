#include "cli/ProgressLine.h"

namespace Tracelyn {

void CProgressLine::Show(double done) {
    if (!m_Patience.IsOver())
        return;
    m_bShown = true;
    std::fprintf(m_pStream, "\rReading %3d %%", static_cast<int>(done * 100));
    std::fflush(m_pStream);
}

CProgressLine::~CProgressLine() {
    if (m_bShown) {
        std::fputs("\r             \r", m_pStream);
        std::fflush(m_pStream);
    }
}

} // namespace Tracelyn
