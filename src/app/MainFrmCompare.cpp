// The main window's commands that compare with a good movement.
#include "app/ContextMenu.h"
#include "app/LongWork.h"
#include "app/MainFrm.h"
#include "app/MeasureDock.h"
#include "measure/Comparison.h"
#include "model/GraphData.h"
#include "render/Graph.h"
#include "support/OutputFile.h"

#include <QActionGroup>

#include <algorithm>

namespace Tracelyn {

namespace {

bool HasCommonSignal(const CGraphData& good, const CGraphData& opened) {
    return std::ranges::any_of(MatchSignals(good, opened), [](const CommonSignal& signal) {
        return signal.compared != nullptr && signal.compared->GetUnit() == signal.good->GetUnit();
    });
}

} // namespace

void CMainFrame::OnCompareWith() {
    const auto path = m_Ui.AskOpenFile({.title = tr("Compare with"),
                                        .filters = GetAnalysisFilters(),
                                        .defaultExtension = {},
                                        .fileName = {},
                                        .directory = m_strLastPath});
    if (!path)
        return;
    if (support::IsSameFile(m_FileSet.GetFullPath(), *path)) {
        ShowMessage(MessageIcon::Stop, tr("'%1' is the opened recording itself.").arg(*path));
        return;
    }
    try {
        CompareWith(*path);
    } catch (...) {
        ShowMessage(MessageIcon::Stop, tr("File not loaded.\nError during load operation."));
    }
}

void CMainFrame::CompareWith(const QString& path) {
    auto recording = std::make_unique<CRecording>();
    bool stopped = false;
    {
        const CScopedCursor wait(Qt::WaitCursor);
        RunLongWork(*this, {}, [&](const support::Progress& progress) {
            recording->Load(path, m_nAccessLevel, [&](double done) {
                stopped = !progress(done);
                return !stopped;
            });
        });
    }
    if (stopped || m_bClosed)
        return;
    const Analysis& analysis = recording->GetAnalysis();
    if (analysis.status == LoadStatus::UnknownExtension)
        ShowMessage(MessageIcon::Stop, tr("'%1' is no analysis file.").arg(path));
    else if (analysis.status == LoadStatus::NotExpanded)
        ShowError(tr("Problem expanding analysis file"));
    if (analysis.status != LoadStatus::Read)
        return;
    ShowResults(analysis.results);
    const auto signals = MatchSignals(recording->GetData(), m_pView->GetGraph().GetData());
    if (std::ranges::none_of(signals,
                             [](const CommonSignal& signal) { return signal.compared != nullptr; })) {
        ShowMessage(MessageIcon::Stop, tr("'%1' has no signal that the opened recording has.").arg(path));
        return;
    }
    StopComparing(); // before the recording goes that the graph borrows
    m_Good.Set(std::move(recording), path);
    UpdateComparison();
}

void CMainFrame::StopComparing() {
    m_pView->ShowBehind(nullptr, 0);
    if (m_pMeasure != nullptr)
        m_pMeasure->Compare(nullptr, 0, {});
    m_Good.Drop();
}

void CMainFrame::UpdateComparison() {
    if (!m_Good.IsThere() || !m_pView->IsDataLoaded() || m_bClosed)
        return;
    const CGraph& graph = m_pView->GetGraph();
    const int shift = m_Good.GetShift(graph.GetData(), graph.GetFixedCursor()).value_or(0);
    m_pView->ShowBehind(m_Good.GetData(), shift);
    if (m_pMeasure == nullptr || m_pMeasure->isHidden())
        return;
    bool isCompared = false;
    {
        const CScopedCursor wait(Qt::WaitCursor);
        RunLongWork(*this, {}, [&](const support::Progress& progress) {
            isCompared = m_pMeasure->Compare(m_Good.GetData(), shift, progress);
        });
    }
    if (!isCompared && !m_bClosed)
        ShowMessage(MessageIcon::Information, tr("The deviations are not shown.\nComparing was stopped."));
}

void CMainFrame::RemarkComparison() {
    if (!m_Good.IsThere() || !m_pView->IsDataLoaded() || m_bClosed)
        return;
    const CGraph& graph = m_pView->GetGraph();
    const QString path = m_FileSet.GetFullPath();
    if (support::IsSameFile(path, m_Good.GetPath()))
        ShowMessage(MessageIcon::Information,
                    tr("'%1' is the recording that others are compared with.").arg(path));
    else if (!HasCommonSignal(*m_Good.GetData(), graph.GetData()))
        ShowMessage(MessageIcon::Information,
                    tr("'%1' has no signal that the opened recording has.").arg(m_Good.GetPath()));
    else if (!m_Good.GetShift(graph.GetData(), graph.GetFixedCursor()))
        ShowMessage(MessageIcon::Information,
                    tr("'%1' does not switch on in both recordings.\nThey begin together now.")
                        .arg(m_Good.GetEvent().value_or(QString())));
}

// Made anew whenever it opens: the events are those of the two recordings.
void CMainFrame::FillAlignMenu(QMenu& menu) {
    menu.clear();
    qDeleteAll(menu.findChildren<QActionGroup*>());
    auto* const choices = new QActionGroup(&menu);
    const auto add = [&](const QString& text, const QString& prompt, const std::optional<QString>& event) {
        QAction* const action = menu.addAction(text);
        action->setStatusTip(prompt);
        action->setCheckable(true);
        action->setChecked(m_Good.GetEvent() == event);
        action->setActionGroup(choices);
        connect(action, &QAction::triggered, this, [this, event] {
            m_Good.SetEvent(event);
            UpdateComparison();
            UpdateCommands();
        });
    };
    add(tr("At the &first sample"), tr("Both recordings begin together"), std::nullopt);
    for (const QString& name : m_Good.GetEvents(m_pView->GetGraph().GetData())) {
        QString shown = name;
        add(tr("When '%1' switches on").arg(shown.replace(u'&', QStringLiteral("&&"))),
            tr("The first time that '%1' switches on is the common zero").arg(name), name);
    }
    menu.addSeparator();
    menu.addAction(&m_Commands.GetAction(CommandId::EventAtFixedCursor));
}

} // namespace Tracelyn
