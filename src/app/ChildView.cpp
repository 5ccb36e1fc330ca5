#include "app/ChildView.h"

#include "app/ShellUi.h"
#include "reader/SignalFileReader.h"
#include "reader/csv/CsvFile.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>

namespace Tracelyn {

namespace {

constexpr int kRepeatMilliseconds = 100;
constexpr int kFastStep = 10;
constexpr float kZoomStep = 1.25F;
constexpr int kBeepHertz = 300;
constexpr int kBeepMilliseconds = 50;

} // namespace

CChildView::CChildView(CShellUi& ui, QWidget* parent) : QAbstractScrollArea(parent), m_Ui(ui) {
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    horizontalScrollBar()->setFocusPolicy(Qt::NoFocus);
    horizontalScrollBar()->setAccessibleName(tr("Part in view"));
    // The toolkit's menu would move the bar without the picture.
    horizontalScrollBar()->setContextMenuPolicy(Qt::NoContextMenu);
    // Every pixel is painted by the graph; nothing is erased before.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setCursor(Qt::ArrowCursor);
    connect(horizontalScrollBar(), &QScrollBar::actionTriggered, this, &CChildView::OnScrollBarAction);
    horizontalScrollBar()->installEventFilter(this);
}

void CChildView::ClearData() {
    m_Timer.stop(); // a load takes the button's release away
    m_Graph.Clear();
    Invalidate();
}

void CChildView::Load(CSignalFileReader& reader, const QString& path) {
    m_bLoading = true;
    reader.ReadAnalysis(m_Graph.GetData(), path);
    m_bLoading = false;
    m_Graph.RestoreGroupStates();
    m_Graph.SetResetPending();
    Invalidate();
}

ExportEnd CChildView::ExportCsv(const QString& path, const support::Progress& progress) const {
    CCsvFile file;
    if (!file.Open(path))
        return ExportEnd::Complete;
    const ExportEnd end = m_Graph.ExportCsv(file, progress);
    if (end == ExportEnd::Complete)
        file.Close();
    else
        file.Discard();
    return end;
}

void CChildView::OnCommand(CommandId id) {
    switch (id) {
    case CommandId::CursorLeft:
        m_Graph.MoveCursor(*this, -1);
        break;
    case CommandId::CursorRight:
        m_Graph.MoveCursor(*this, 1);
        break;
    case CommandId::FastLeft:
        m_Graph.MoveCursor(*this, -kFastStep);
        break;
    case CommandId::FastRight:
        m_Graph.MoveCursor(*this, kFastStep);
        break;
    case CommandId::ZoomIn:
        m_Graph.Zoom(*this, m_Graph.GetZoom() * kZoomStep);
        break;
    case CommandId::ZoomOut:
        m_Graph.Zoom(*this, m_Graph.GetZoom() / kZoomStep);
        break;
    case CommandId::ZoomReset:
        m_Graph.Zoom(*this, 1.0F);
        break;
    case CommandId::SelectNextGroup:
        m_Graph.SelectNextGroup(*this);
        break;
    case CommandId::SelectPreviousGroup:
        m_Graph.SelectPreviousGroup(*this);
        break;
    case CommandId::ToggleSelectedGroup:
        m_Graph.ToggleSelectedGroup(*this);
        break;
    case CommandId::ToggleFixedCursor: {
        const bool isSet = m_Graph.GetFixedCursor() != kNoReference;
        m_Graph.SetFixedCursor(*this, isSet ? kNoReference : m_Graph.GetCursorPosition());
        break;
    }
    default:
        break;
    }
}

bool CChildView::OnKeyDown(const QKeyEvent& event) {
    if (event.modifiers().testFlag(Qt::AltModifier))
        return false;
    if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab || event.key() == Qt::Key_PageUp) {
        m_Graph.ToggleConsoleSide(*this);
        return true;
    }
    const auto digit = MainDigit(event);
    if (digit)
        ToggleGroupByDigit(*digit);
    return digit.has_value();
}

void CChildView::ToggleGroupByDigit(int digit) {
    if (m_Graph.SelectGroup(*this, digit))
        m_Graph.ToggleSelectedGroup(*this);
    else
        m_Ui.Beep(kBeepHertz, kBeepMilliseconds);
}

void CChildView::paintEvent(QPaintEvent* event) {
    CPaintArea area = std::exchange(m_Invalid, {});
    // When more is asked for than was marked, the window has lost pixels, and contents are drawn everywhere.
    if (event->region() != area.GetRegion())
        area = CPaintArea(event->region());
    QPainter painter(viewport());
    if (m_bLoading) {
        m_Graph.DrawBackground(painter, event->region());
        return;
    }
    m_Graph.Draw(*this, painter, area);
    Q_EMIT FramePainted();
}

void CChildView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_LastMouse = event->position().toPoint();
    m_Timer.start(kRepeatMilliseconds, this);
    m_Graph.OnClick(*this, FlagsOf(*event), m_LastMouse.x(), m_LastMouse.y());
}

void CChildView::mouseMoveEvent(QMouseEvent* event) {
    m_LastMouse = event->position().toPoint();
    if (FlagsOf(*event) == kLeftButton)
        m_Graph.OnClick(*this, kLeftButton, m_LastMouse.x(), m_LastMouse.y());
}

void CChildView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_LastMouse = event->position().toPoint();
    m_Timer.stop();
    m_Graph.ToggleGroupAt(*this, FlagsOf(*event), m_LastMouse.x(), m_LastMouse.y());
}

// The second press of a double click moves no cursor; its release toggles a group like any other.
void CChildView::mouseDoubleClickEvent(QMouseEvent* /*event*/) {}

// The wheel is another hand on the arrows of the scroll bar, and on the commands that zoom.
void CChildView::wheelEvent(QWheelEvent* event) {
    QScrollBar& bar = *horizontalScrollBar();
    const int notches = m_Wheel.TakeNotches(*event);
    for (int i = 0; i < std::abs(notches); ++i) {
        if (CWheel::IsZooming(*event))
            Q_EMIT CommandRequested(notches > 0 ? CommandId::ZoomIn : CommandId::ZoomOut);
        else if (bar.isEnabled())
            bar.triggerAction(notches > 0 ? QScrollBar::SliderSingleStepSub
                                          : QScrollBar::SliderSingleStepAdd);
    }
    event->accept();
}

// Left to itself, the bar would move without the picture.
bool CChildView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != horizontalScrollBar() || event->type() != QEvent::Wheel)
        return QAbstractScrollArea::eventFilter(watched, event);
    wheelEvent(static_cast<QWheelEvent*>(event));
    return true;
}

// A menu under a button that drags the cursor would take the button's release away.
void CChildView::contextMenuEvent(QContextMenuEvent* event) {
    if (m_Timer.isActive())
        return;
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    Q_EMIT ContextMenuRequested(isByKey ? viewport()->mapToGlobal(GetMenuPlace()) : event->globalPos());
}

QPoint CChildView::GetMenuPlace() const {
    const auto cursor = static_cast<float>(m_Graph.GetCursorPosition());
    const QPoint line(m_Graph.GetCanvas().GetTimeAxis().WorldToPixelX(cursor), 0);
    return IsDataLoaded() && viewport()->rect().contains(line) ? line : QPoint();
}

void CChildView::keyPressEvent(QKeyEvent* event) {
    if (!OnKeyDown(*event))
        event->ignore();
}

void CChildView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_Timer.timerId())
        m_Graph.OnClick(*this, kLeftButton, m_LastMouse.x(), m_LastMouse.y());
}

// When a dialog opens while the button is held, the view never hears of the button's release.
bool CChildView::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked)
        m_Timer.stop();
    return QAbstractScrollArea::event(event);
}

PixelRect CChildView::GetClientRect() const {
    return PixelRect::From(viewport()->rect());
}

void CChildView::Invalidate(const PixelRect& area, Contents contents) {
    const QRect rect = area.ToQRect() & viewport()->rect();
    m_Invalid.Add(rect, contents);
    viewport()->update(rect);
}

void CChildView::Invalidate() {
    m_Invalid = CPaintArea(viewport()->rect());
    viewport()->update();
}

void CChildView::UpdateNow() {
    if (!m_Invalid.IsEmpty())
        viewport()->repaint(m_Invalid.GetRegion());
}

void CChildView::SetScrollBar(const ScrollBarState& state) {
    QScrollBar& bar = *horizontalScrollBar();
    // The toolkit's maximum is the largest position, without the page.
    const int64_t last = std::clamp<int64_t>(int64_t{state.maximum} - state.page + 1, state.minimum,
                                             std::numeric_limits<int>::max());
    bar.setRange(state.minimum, static_cast<int>(last));
    bar.setPageStep(state.page);
    bar.setValue(state.position);
    bar.setEnabled(last > state.minimum);
}

void CChildView::OnScrollBarAction(int action) {
    const auto code = CodeOf(action);
    if (!code)
        return;
    m_Graph.OnHScroll(*this, *code, static_cast<uint32_t>(horizontalScrollBar()->sliderPosition()));
    // The bar has moved by itself. Where the graph did not move, the bar goes back.
    m_Graph.UpdateScrollBar(*this);
}

} // namespace Tracelyn
