// What the program shows in the status bar: its panes, and the bar that tells how far a load has come.
#pragma once

#include "support/Progress.h"

#include <QObject>

#include <memory>

class QLabel;
class QProgressBar;
class QStatusBar;

namespace Tracelyn {

// The panes: message, file label, the keyboard's lock keys, and how many samples the picture leaves out. A
// text that is too long for its pane is elided and never makes the window wider.
class CStatusPanes : public QObject {
    Q_OBJECT

public:
    // Adds the panes to the bar, which owns them and this object.
    explicit CStatusPanes(QStatusBar& bar);

    // What the command under the mouse does; "Ready" for an empty text.
    void SetPrompt(const QString& text);
    // Elided in the middle, so that the number at its end is always seen.
    void SetFileLabel(const QString& text);
    // The picture shows one of so many samples. The pane is there while that is more than one.
    void SetSamplesPerShownOne(int samples);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void UpdateLockKeys();

    QLabel* m_pMessage;
    QLabel* m_pFileLabel;
    QLabel* m_pCaps;
    QLabel* m_pNum;
    QLabel* m_pSkipping;
};

// The bar that tells how far a load has come. Lives for one load: the bar appears when the load takes long
// and goes with this object. It is painted at once, without waiting for events, and no input is handled
// meanwhile.
class CLoadProgress {
public:
    // Borrows the status bar.
    explicit CLoadProgress(QStatusBar& bar,
                           std::chrono::milliseconds patience = support::CPatience::kDefault);
    CLoadProgress(const CLoadProgress&) = delete;
    CLoadProgress& operator=(const CLoadProgress&) = delete;
    ~CLoadProgress();

    // The part that is done, 0 to 1.
    void Show(double done);

private:
    QStatusBar& m_Bar;
    support::CPatience m_Patience;
    // Empty until the bar appears. A child of the status bar, which outlives this object.
    std::unique_ptr<QProgressBar> m_pProgress;
};

} // namespace Tracelyn
