// The client area of the main window: shows the graph and turns keys, mouse, timer and scroll bar into its
// operations.
#pragma once

#include "app/Commands.h"
#include "app/InputEvents.h"
#include "render/Graph.h"
#include "render/GraphWindow.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QPoint>

namespace Tracelyn {

class CSignalFileReader;
class CShellUi;

class CChildView : public QAbstractScrollArea, private CGraphWindow {
    Q_OBJECT

public:
    // Borrows the ui, which must outlive the view.
    explicit CChildView(CShellUi& ui, QWidget* parent = nullptr);

    CGraph& GetGraph() { return m_Graph; }
    const CGraph& GetGraph() const { return m_Graph; }

    bool IsDataLoaded() const { return m_Graph.GetData().HasData(); }
    // While it is true the values are still being written, on other threads, too.
    bool IsLoading() const { return m_bLoading; }
    // Drops the loaded data; the groups' expanded states are remembered.
    void ClearData();
    // Lets the reader append its file, and restores the expanded states that were remembered by name. Until
    // it is done the view paints its background only.
    void Load(CSignalFileReader& reader, const QString& path);
    // Replaces an existing file once the new one is complete; else nothing is written. Does nothing, and says
    // complete, when the path cannot be opened; throws when writing fails.
    ExportEnd ExportCsv(const QString& path, const support::Progress& progress) const;
    // For a picture of the client area: as large, at the scale of the screen.
    COffscreenWindow MakeOffscreenWindow() const {
        return COffscreenWindow(viewport()->size(), viewport()->devicePixelRatioF());
    }
    void ToggleBackground() { m_Graph.ToggleBackground(*this); }
    void ShowEveryEvent(bool show) { m_Graph.ShowEveryEvent(*this, show); }
    // See CGraph.
    void ShowBehind(const CGraphData* other, int shift) { m_Graph.ShowBehind(*this, other, shift); }

    // Carries out one of the view's commands; ignores all others.
    void OnCommand(CommandId id);
    // The keys that are no commands: console side and group digits. False for any other key.
    bool OnKeyDown(const QKeyEvent& event);

Q_SIGNALS:
    // A frame of the graph was painted, or a part of one.
    void FramePainted();
    // The context menu is to open at this point of the screen: where the right button was pressed, or for the
    // menu key at the top of the cursor, or of the picture while the cursor is out of view.
    void ContextMenuRequested(const QPoint& position);
    // The wheel asks for a command, which may be disabled.
    void CommandRequested(CommandId id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void scrollContentsBy(int /*dx*/, int /*dy*/) override {}
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool /*next*/) override { return false; }

private:
    PixelRect GetClientRect() const override;
    void Invalidate(const PixelRect& area, Contents contents) override;
    void Invalidate() override;
    void UpdateNow() override;
    void SetScrollBar(const ScrollBarState& state) override;

    QPoint GetMenuPlace() const;
    void OnScrollBarAction(int action);
    void ToggleGroupByDigit(int digit);

    CGraph m_Graph;
    CShellUi& m_Ui;
    QPoint m_LastMouse;
    QBasicTimer m_Timer;
    CWheel m_Wheel;
    bool m_bLoading = false;
    // What was marked and not painted yet.
    CPaintArea m_Invalid;
};

} // namespace Tracelyn
