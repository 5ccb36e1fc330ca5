#include "app/StatusBar.h"

#include "support/UserDevices.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QStatusBar>
#include <QStyle>

namespace Tracelyn {

namespace {

constexpr int kWidth = 200;
constexpr int kMargin = 3;

void* X11Display() {
#if QT_CONFIG(xcb)
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return x11->display();
#endif
    return nullptr;
}

// One line, elided to the width that the bar gives it.
class CElidedLabel : public QLabel {
public:
    explicit CElidedLabel(Qt::TextElideMode mode) : m_Mode(mode) {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const QRect area = contentsRect();
        style()->drawItemText(&painter, area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                              palette(), isEnabled(), fontMetrics().elidedText(text(), m_Mode, area.width()),
                              foregroundRole());
    }

private:
    Qt::TextElideMode m_Mode;
};

QLabel* MakePane(QLabel* label, const char* name, const QString& text = {}) {
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

} // namespace

CStatusPanes::CStatusPanes(QStatusBar& bar)
    : QObject(&bar), m_pMessage(MakePane(new CElidedLabel(Qt::ElideRight), "message")),
      m_pFileLabel(MakePane(new CElidedLabel(Qt::ElideMiddle), "fileLabel")),
      m_pCaps(MakePane(new QLabel, "caps", tr("CAPS"))), m_pNum(MakePane(new QLabel, "num", tr("NUM"))),
      m_pSkipping(MakePane(new QLabel, "skipping")) {
    m_pMessage->setContentsMargins(4, 0, 0, 0);
    SetPrompt(QString());
    bar.addWidget(m_pMessage, 1);
    bar.addPermanentWidget(m_pFileLabel, 1);
    for (QLabel* const key : {m_pCaps, m_pNum}) {
        // The pane keeps its place while the key is off.
        key->setFixedWidth(key->sizeHint().width());
        bar.addPermanentWidget(key);
    }
    bar.addPermanentWidget(m_pSkipping);
    m_pSkipping->hide();
    UpdateLockKeys();
    qApp->installEventFilter(this);
}

void CStatusPanes::SetPrompt(const QString& text) {
    m_pMessage->setText(text.isEmpty() ? tr("Ready") : text);
}

void CStatusPanes::SetFileLabel(const QString& text) {
    m_pFileLabel->setText(text);
}

void CStatusPanes::SetSamplesPerShownOne(int samples) {
    m_pSkipping->setVisible(samples > 1);
    if (samples <= 1)
        return;
    m_pSkipping->setText(tr("1 of %1").arg(samples));
    m_pSkipping->setToolTip(
        tr("At this zoom the curves show 1 of %1 samples, and short events may be hidden.\n"
           "\"Show every event\" in the menu of the right mouse button shows them all.")
            .arg(samples));
}

bool CStatusPanes::eventFilter(QObject* watched, QEvent* event) {
    // The toolkit gives an event to the window first and then to its widgets: of the two, this looks at the
    // first.
    if (watched->isWindowType() && (event->type() == QEvent::KeyPress ||
                                    event->type() == QEvent::KeyRelease || event->type() == QEvent::FocusIn))
        UpdateLockKeys();
    return QObject::eventFilter(watched, event);
}

void CStatusPanes::UpdateLockKeys() {
    const support::LockKeys keys = support::ReadLockKeys(X11Display());
    m_pCaps->setText(keys.caps ? tr("CAPS") : QString());
    m_pNum->setText(keys.num ? tr("NUM") : QString());
}

CLoadProgress::CLoadProgress(QStatusBar& bar, std::chrono::milliseconds patience)
    : m_Bar(bar), m_Patience(patience) {}

void CLoadProgress::Show(double done) {
    if (!m_Bar.isVisible() || !m_Patience.IsOver())
        return;
    if (!m_pProgress) {
        // Placed by hand, over the panes: a layout would place it when events are handled, and a load handles
        // none.
        m_pProgress = std::make_unique<QProgressBar>(&m_Bar);
        m_pProgress->setObjectName(QStringLiteral("loadProgress"));
        m_pProgress->setRange(0, 1000);
        m_pProgress->setTextVisible(false);
        m_pProgress->setAutoFillBackground(true);
        const QRect area = m_Bar.rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
        m_pProgress->setGeometry(area.intersected(QRect(area.topLeft(), QSize(kWidth, area.height()))));
        m_pProgress->show();
    }
    m_pProgress->setValue(static_cast<int>(done * 1000));
    m_pProgress->repaint();
}

CLoadProgress::~CLoadProgress() = default;

} // namespace Tracelyn
