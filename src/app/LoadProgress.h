// The bar in the status bar that tells how far a load has come.
#pragma once

#include "support/Patience.h"

class QProgressBar;
class QStatusBar;

namespace Tracelyn {

// Lives for one load. The bar appears when the load takes long and goes with this object. It is painted at
// once, without waiting for events, and no input is handled meanwhile.
class CLoadProgress {
public:
    // Borrows the status bar.
    explicit CLoadProgress(QStatusBar& bar, std::chrono::milliseconds patience = support::CPatience::kDefault)
        : m_Bar(bar), m_Patience(patience) {}
    CLoadProgress(const CLoadProgress&) = delete;
    CLoadProgress& operator=(const CLoadProgress&) = delete;
    ~CLoadProgress();

    // The part that is done, 0 to 1.
    void Show(double done);

private:
    QStatusBar& m_Bar;
    support::CPatience m_Patience;
    QProgressBar* m_pProgress = nullptr; // belongs to the status bar
};

} // namespace Tracelyn
