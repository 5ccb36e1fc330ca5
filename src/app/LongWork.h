// Keeps the main window alive while a load or an export runs inside one of its commands.
#pragma once

#include "app/StatusBar.h"
#include "support/Progress.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class QMainWindow;
class QProgressDialog;

namespace Tracelyn {

// Lives as long as the work. The window paints, moves and resizes meanwhile but takes no input: keys and
// clicks are dropped, not played afterwards, and a file that is dragged here finds no place. Escape asks the
// work to stop; so does the close box, which is kept for the end. Before the window is shown, work that takes
// long has a small window of its own with a button to stop it.
class CLongWork : public QObject {
    Q_OBJECT

public:
    // Borrows the window, whose status bar shows how far the work is. `title` names the work.
    CLongWork(QMainWindow& window, const QString& title,
              std::chrono::milliseconds patience = support::CPatience::kDefault);
    // Drops the input that came last.
    ~CLongWork() override;

    // Whether any work is under way: what was asked for before it began must not begin in the middle of it.
    static bool IsUnderWay() { return s_nUnderWay > 0; }

    // For support::Progress: shows the part that is done and handles the window's events. False once the work
    // is to stop.
    bool Continue(double done);

    // Whether the user wants the window to close; the window's owner does it when the work is over.
    bool IsClosing() const { return m_bClosing; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowBeforeWindow(double done);
    bool BelongsToDialog(QObject* object) const;

    QMainWindow& m_Window;
    QString m_strTitle;
    CLoadProgress m_Progress;
    support::CPatience m_Patience; // of the small window
    support::CPatience m_NextEvents{kBetweenEvents};
    std::unique_ptr<QProgressDialog> m_pDialog;
    bool m_bStopped = false;
    bool m_bClosing = false;

    static inline int s_nUnderWay = 0;
    static constexpr std::chrono::milliseconds kBetweenEvents{100};
};

// Runs work that takes the progress to report. False when the user closed the window meanwhile, which is done
// when the work is over. What the work throws comes out of here.
bool RunLongWork(QMainWindow& window, const QString& title,
                 const std::function<void(const support::Progress&)>& work);

} // namespace Tracelyn
