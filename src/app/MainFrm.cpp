#include "app/MainFrm.h"

#include "app/Accessibility.h"
#include "app/Artwork.h"
#include "app/ContextMenu.h"
#include "app/MeasureDock.h"
#include "app/MenuBar.h"
#include "app/StatusBar.h"
#include "render/Graph.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QKeyEvent>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QToolBar>

namespace Tracelyn {

namespace {

constexpr QSize kDefaultSize(1280, 800);
constexpr QSize kToolBarIconSize(16, 16);

} // namespace

CMainFrame::CMainFrame(CShellUi& ui)
    : m_Ui(ui), m_Commands(*this, [this](CommandId id) { OnCommand(id); }),
      m_strLastPath(QDir::toNativeSeparators(QDir::tempPath())), m_strTitle(tr("Tracelyn viewer")) {
    SetFileJustOpened(false);
}

void CMainFrame::LoadFrame() {
    QApplication::setWindowIcon(LoadIcon(QStringLiteral("app")));
    DescribeViews();
    m_pView = new CChildView(m_Ui, this);
    connect(m_pView, &CChildView::CommandRequested, this,
            [this](CommandId id) { m_Commands.GetAction(id).trigger(); });
    setCentralWidget(m_pView);
    setAcceptDrops(true);
    CreateToolBar();
    m_pStatusPanes = new CStatusPanes(*statusBar());
    connect(m_pView, &CChildView::FramePainted, this, [this] {
        m_pStatusPanes->SetSamplesPerShownOne(m_pView->GetGraph().GetSamplesPerShownOne());
        TellValuesChanged(*m_pView);
    });
    CreateMenus();
    setWindowTitle(m_strTitle);
    resize(FittingSize(*this, kDefaultSize));
    m_pView->setFocus();
    UpdateCommands();
}

void CMainFrame::CreateToolBar() {
    m_pToolBar = addToolBar(tr("Toolbar"));
    m_pToolBar->setObjectName(QStringLiteral("toolbar"));
    m_pToolBar->setIconSize(kToolBarIconSize);
    m_pToolBar->setAllowedAreas(Qt::AllToolBarAreas);
    m_pToolBar->setContextMenuPolicy(Qt::PreventContextMenu);
    const auto add = [this](CommandId id) { m_pToolBar->addAction(&m_Commands.GetAction(id)); };
    add(CommandId::FileOpen);
    m_pToolBar->addSeparator();
    add(CommandId::PreviousFile);
    add(CommandId::NextFile);
    m_pToolBar->addSeparator();
    add(CommandId::ToggleFixedCursor);
    m_pToolBar->addSeparator();
    add(CommandId::ZoomIn);
    add(CommandId::ZoomOut);
    add(CommandId::ZoomReset);
    for (QWidget* const button : m_pToolBar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        button->setFocusPolicy(Qt::NoFocus);
}

void CMainFrame::AddMenu(const QString& title, std::initializer_list<CommandId> ids) {
    QMenu& menu = m_pMenuBar->AddMenu(title);
    for (const CommandId id : ids)
        menu.addAction(&m_Commands.GetAction(id));
}

void CMainFrame::CreateMenus() {
    m_pMenuBar = new CMenuBar(this);
    setMenuBar(m_pMenuBar);
    AddMenu(tr("&File"), {CommandId::FileOpen, CommandId::FileSave, CommandId::SaveCsv, CommandId::FileClose,
                          CommandId::Exit});
    AddMenu(tr("&View"), {CommandId::ViewToolbar, CommandId::ViewStatusBar, CommandId::PreviousFile,
                          CommandId::NextFile, CommandId::ChangeBackground});
    AddMenu(tr("&Action"),
            {CommandId::ZoomIn, CommandId::ZoomOut, CommandId::ZoomReset, CommandId::ToggleFixedCursor});
    AddMenu(tr("&Help"), {CommandId::About});
    m_pContextMenu = new CContextMenu(m_Commands, this);
    connect(m_pView, &CChildView::ContextMenuRequested, m_pContextMenu,
            [this](const QPoint& position) { m_pContextMenu->popup(position); });
    // The dock may have been closed by its own box.
    connect(m_pContextMenu, &QMenu::aboutToShow, this, &CMainFrame::UpdateCommands);
    QMenu& align = m_pContextMenu->GetAlignMenu();
    // A menu keeps the prompts of its entries to itself when it opens beside another one.
    connect(&align, &QMenu::hovered, this,
            [this](const QAction* action) { m_pStatusPanes->SetPrompt(action->statusTip()); });
    connect(&align, &QMenu::aboutToHide, this, [this] { m_pStatusPanes->SetPrompt({}); });
    connect(&align, &QMenu::aboutToShow, this, [this, &align] { FillAlignMenu(align); });
}

void CMainFrame::OnCommand(CommandId id) {
    switch (id) {
    case CommandId::FileOpen:
        OnFileOpen();
        break;
    case CommandId::FileClose:
        OnFileClose();
        break;
    case CommandId::FileSave:
        OnFileSave();
        break;
    case CommandId::SaveCsv:
        OnSaveCsv();
        break;
    case CommandId::PreviousFile:
        OnStep(false);
        break;
    case CommandId::NextFile:
        OnStep(true);
        break;
    case CommandId::ShowEveryEvent:
        m_pView->ShowEveryEvent(!m_pView->GetGraph().IsEveryEventShown());
        break;
    case CommandId::Measure:
        OnMeasure();
        break;
    case CommandId::CompareWith:
        OnCompareWith();
        break;
    case CommandId::KeepForSet:
        m_Good.SetKept(!m_Good.IsKept());
        break;
    case CommandId::StopComparing:
        StopComparing();
        break;
    case CommandId::EventAtFixedCursor:
        m_Good.SetAtFixedCursor(!m_Good.IsAtFixedCursor());
        UpdateComparison();
        break;
    case CommandId::CopyPicture:
        OnCopyPicture();
        break;
    case CommandId::SavePicture:
        OnSavePicture();
        break;
    case CommandId::CopyValues:
        OnCopyValues();
        break;
    case CommandId::ChangeBackground:
        m_pView->ToggleBackground();
        break;
    case CommandId::ViewToolbar:
        m_pToolBar->setVisible(m_pToolBar->isHidden());
        break;
    case CommandId::ViewStatusBar:
        statusBar()->setVisible(statusBar()->isHidden());
        break;
    case CommandId::About:
        Q_EMIT AboutRequested();
        break;
    case CommandId::Exit:
        close();
        break;
    case CommandId::CaptureLogfile:
        break;
    default:
        m_pView->OnCommand(id);
        if (id == CommandId::ToggleFixedCursor && m_Good.IsAtFixedCursor())
            UpdateComparison();
        break;
    }
    UpdateCommands();
}

void CMainFrame::UpdateCommands() {
    const CGraph& graph = m_pView->GetGraph();
    const bool loaded = m_pView->IsDataLoaded();
    for (const CommandId id :
         {CommandId::SaveCsv, CommandId::FileClose, CommandId::CopyPicture, CommandId::SavePicture,
          CommandId::CopyValues, CommandId::ShowEveryEvent, CommandId::Measure, CommandId::CompareWith})
        m_Commands.SetEnabled(id, loaded);
    for (const CommandId id : {CommandId::KeepForSet, CommandId::StopComparing})
        m_Commands.SetEnabled(id, m_Good.IsThere());
    m_pContextMenu->GetAlignMenu().setEnabled(loaded && m_Good.IsThere());
    m_Commands.SetEnabled(CommandId::EventAtFixedCursor,
                          m_Good.GetEvent().has_value() && graph.GetFixedCursor() != kNoReference);
    m_Commands.SetChecked(CommandId::ShowEveryEvent, graph.IsEveryEventShown());
    const bool measures = m_pMeasure != nullptr && !m_pMeasure->isHidden();
    m_Commands.SetEnabled(CommandId::Measure, loaded || measures);
    m_Commands.SetChecked(CommandId::Measure, measures);
    m_Commands.GetAction(CommandId::StopComparing)
        .setStatusTip(m_Good.IsThere() ? tr("Remove the second recording, %1").arg(m_Good.GetName())
                                       : tr("Remove the second recording"));
    m_Commands.SetChecked(CommandId::KeepForSet, m_Good.IsKept());
    m_Commands.SetChecked(CommandId::EventAtFixedCursor, m_Good.IsAtFixedCursor());
    m_Commands.SetEnabled(CommandId::PreviousFile, !m_FileSet.IsFirst());
    m_Commands.SetEnabled(CommandId::NextFile, !m_FileSet.IsLast());
    m_Commands.SetEnabled(CommandId::ZoomIn, loaded && graph.CanZoomIn());
    m_Commands.SetEnabled(CommandId::ZoomOut, loaded && graph.CanZoomOut());
    m_Commands.SetEnabled(CommandId::ZoomReset, loaded && graph.CanZoomOut());
    m_Commands.SetEnabled(CommandId::ToggleFixedCursor, loaded);
    // Checked also without a fixed cursor, and unchecked with one at sample 0: users know it that way.
    m_Commands.SetChecked(CommandId::ToggleFixedCursor, loaded && graph.GetFixedCursor() != 0);
    m_Commands.SetChecked(CommandId::ViewToolbar, !m_pToolBar->isHidden());
    m_Commands.SetChecked(CommandId::ViewStatusBar, !statusBar()->isHidden());
    m_pStatusPanes->SetFileLabel(m_strFileLabel);
}

// The toolkit would write the prompt over the panes and hide the message pane under it.
bool CMainFrame::event(QEvent* event) {
    if (event->type() != QEvent::StatusTip)
        return QMainWindow::event(event);
    m_pStatusPanes->SetPrompt(static_cast<QStatusTipEvent*>(event)->tip());
    return true;
}

void CMainFrame::keyPressEvent(QKeyEvent* event) {
    const bool isOfMeasure = m_pMeasure != nullptr && m_pMeasure->OnKeyDown(*event);
    if (!isOfMeasure && !m_pView->OnKeyDown(*event) && !m_pMenuBar->OnKeyDown(*event))
        QMainWindow::keyPressEvent(event);
}

void CMainFrame::focusInEvent(QFocusEvent* event) {
    QMainWindow::focusInEvent(event);
    m_pView->setFocus();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    m_bClosed = true;
    event->accept();
    QCoreApplication::exit(0);
}

} // namespace Tracelyn
