// The main window's commands around the dock that measures.
#include "app/LongWork.h"
#include "app/MainFrm.h"
#include "app/MeasureDock.h"
#include "render/Graph.h"
#include "support/OutputFile.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>

#include <new>

namespace Tracelyn {

void CMainFrame::OnMeasure() {
    if (m_pMeasure == nullptr) {
        m_pMeasure = new CMeasureDock(this);
        m_pMeasure->hide();
        addDockWidget(Qt::BottomDockWidgetArea, m_pMeasure);
        connect(m_pView, &CChildView::FramePainted, m_pMeasure, &CMeasureDock::Follow);
        connect(m_pMeasure, &CMeasureDock::CopyRequested, this, [this] {
            QGuiApplication::clipboard()->setText(QString::fromUtf8(m_pMeasure->GetText(false, {})));
        });
        connect(m_pMeasure, &CMeasureDock::SaveRequested, this, &CMainFrame::OnSaveMeasured);
    }
    m_pMeasure->setVisible(m_pMeasure->isHidden());
    MeasureLoaded();
    UpdateComparison();
}

void CMainFrame::MeasureLoaded() {
    if (m_pMeasure == nullptr || m_pMeasure->isHidden() || m_pMeasure->IsMeasuring() ||
        !m_pView->IsDataLoaded() || m_bClosed)
        return;
    bool isMeasured = false;
    try {
        const CScopedCursor wait(Qt::WaitCursor);
        RunLongWork(*this, {}, [&](const support::Progress& progress) {
            isMeasured = m_pMeasure->Measure(m_pView->GetGraph(), progress);
        });
    } catch (const std::bad_alloc&) {
        ShowMessage(MessageIcon::Stop, tr("Not measured.\nThere is too little memory."));
    }
    m_pMeasure->setVisible(isMeasured);
}

void CMainFrame::OnSaveMeasured() {
    const auto path = m_Ui.AskSaveFile({.title = {},
                                        .filters = {{tr("CSV Files"), {QStringLiteral("*.csv")}}},
                                        .defaultExtension = QStringLiteral("csv"),
                                        .fileName = DefaultName(),
                                        .directory = m_strLastPath});
    if (!path)
        return;
    if (support::IsSameFile(m_FileSet.GetFullPath(), *path) || support::IsSameFile(m_Good.GetPath(), *path)) {
        ShowMessage(MessageIcon::Stop, tr("File not exported.\n'%1' is an opened recording.").arg(*path));
        return;
    }
    const QByteArray text = m_pMeasure->GetText(true, QFileInfo(m_FileSet.GetFullPath()).fileName());
    support::COutputFile output(*path);
    if (output.CommitWith(text))
        ShowMessage(MessageIcon::Information, tr("File '%1' was created successfully").arg(*path));
    else
        ShowMessage(MessageIcon::Stop, tr("File not exported.\nError during write operation."));
}

} // namespace Tracelyn
