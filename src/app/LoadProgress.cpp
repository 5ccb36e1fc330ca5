#include "app/LoadProgress.h"

#include <QProgressBar>
#include <QStatusBar>

namespace Tracelyn {

namespace {

constexpr int kWidth = 200;
constexpr int kMargin = 3;

} // namespace

void CLoadProgress::Show(double done) {
    if (!m_Bar.isVisible() || !m_Patience.IsOver())
        return;
    if (m_pProgress == nullptr) {
        // Over the panes: the bar's layout would come into effect with later events only.
        m_pProgress = new QProgressBar(&m_Bar);
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

CLoadProgress::~CLoadProgress() {
    delete m_pProgress;
}

} // namespace Tracelyn
