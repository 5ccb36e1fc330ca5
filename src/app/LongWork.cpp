#include "app/LongWork.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMainWindow>
#include <QProgressDialog>

namespace Tracelyn {

namespace {

constexpr int kSteps = 1000;

bool IsDrag(QEvent::Type type) {
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TabletMove:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return IsDrag(type);
    }
}

} // namespace

CLongWork::CLongWork(QMainWindow& window, const QString& title, std::chrono::milliseconds patience)
    : m_Window(window), m_strTitle(title), m_Progress(*window.statusBar(), patience), m_Patience(patience) {
    qApp->installEventFilter(this);
    ++s_nUnderWay;
}

CLongWork::~CLongWork() {
    m_pDialog.reset();
    if (m_Window.isVisible())
        QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    --s_nUnderWay;
}

bool CLongWork::Continue(double done) {
    if (m_bStopped)
        return false;
    m_Progress.Show(done);
    if (!m_Window.isVisible())
        ShowBeforeWindow(done);
    if ((m_Window.isVisible() || m_pDialog) && m_NextEvents.IsOver())
        QCoreApplication::processEvents();
    return !m_bStopped;
}

void CLongWork::ShowBeforeWindow(double done) {
    if (!m_Patience.IsOver())
        return;
    if (!m_pDialog) {
        m_pDialog = std::make_unique<QProgressDialog>(m_strTitle, tr("Stop"), 0, kSteps);
        m_pDialog->setWindowTitle(tr("Tracelyn"));
        m_pDialog->setMinimumDuration(0);
        m_pDialog->setAutoReset(false);
        m_pDialog->setAutoClose(false);
        connect(m_pDialog.get(), &QProgressDialog::canceled, this, [this] { m_bStopped = true; });
        m_pDialog->show();
    }
    m_pDialog->setValue(static_cast<int>(done * kSteps));
}

bool CLongWork::BelongsToDialog(QObject* object) const {
    const auto* const widget = qobject_cast<QWidget*>(object);
    return m_pDialog && widget != nullptr && widget->window() == m_pDialog.get();
}

// Windows of the system see input before their widgets do and must, for the toolkit keeps count of what is
// pressed; it is dropped where it would reach a widget or a command.
bool CLongWork::eventFilter(QObject* watched, QEvent* event) {
    if (watched->isWindowType() || BelongsToDialog(watched))
        return false;
    if (event->type() == QEvent::Close && watched == &m_Window) {
        m_bStopped = m_bClosing = true;
        event->ignore();
        return true;
    }
    if (!IsInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        m_bStopped = true;
    // Whoever drags a file would take it for moved when the drop is accepted.
    event->setAccepted(!IsDrag(event->type()));
    return true;
}

bool RunLongWork(QMainWindow& window, const QString& title,
                 const std::function<void(const support::Progress&)>& work) {
    bool closes = false;
    {
        CLongWork running(window, title);
        work([&running](double done) { return running.Continue(done); });
        closes = running.IsClosing();
    }
    if (closes)
        window.close();
    return !closes;
}

} // namespace Tracelyn
