// The dock with the figures of all signals between the two cursors.
#pragma once

#include "support/Progress.h"

#include <QBasicTimer>
#include <QDockWidget>
#include <QString>

#include <memory>
#include <optional>
#include <utility>

class QLabel;
class QTableView;

namespace Tracelyn {

class CGraph;
class CGraphData;
class CMeasureModel;
class CStatisticsIndex;

// Measures from the fixed cursor to the cursor, or without a fixed cursor the samples in view. It follows
// them, but not more often than the eye can: a step of the cursor does not wait for it. Never takes the
// keyboard: its keys come from the main window.
class CMeasureDock : public QDockWidget {
    Q_OBJECT

public:
    // Shows nothing yet.
    explicit CMeasureDock(QWidget* parent);
    ~CMeasureDock() override;

    // Shows the signals of the graph's model, which it borrows until Forget, and sums up their samples
    // first. False when it was asked to stop, and nothing is shown then. Throws when memory runs out.
    bool Measure(const CGraph& graph, const support::Progress& progress);
    // To be called before the model changes.
    void Forget();
    bool IsMeasuring() const { return m_pIndex != nullptr; }

    // Measures again, soon, if the range has changed. To be called after each frame.
    void Follow();
    // Shows how far the signals are from those of a second recording, which is only borrowed for the call;
    // null ends that.
    bool Compare(const CGraphData* good, int shift, const support::Progress& progress);

    // Scrolls the table with Ctrl and the arrow keys, copies and saves it with Alt and C or S. False for any
    // other key, and while it is hidden.
    bool OnKeyDown(const QKeyEvent& event);

    // The table as text, see CMeasureModel; with what stands in it now.
    QByteArray GetText(bool csv, const QString& file);

Q_SIGNALS:
    void CopyRequested();
    void SaveRequested();

protected:
    void showEvent(QShowEvent* event) override;
    // A dock that floats gives the keys to the main window.
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    std::pair<int, int> GetRange() const;
    void Refresh();
    void UseColors();

    CMeasureModel* m_pModel;
    QLabel* m_pRange;
    QTableView* m_pTable;
    QWidget* m_pButtons;
    const CGraph* m_pGraph = nullptr;
    std::unique_ptr<CStatisticsIndex> m_pIndex;
    // What the table shows.
    std::optional<std::pair<int, int>> m_Shown;
    std::optional<bool> m_bDark;
    QBasicTimer m_Timer;
};

} // namespace Tracelyn
