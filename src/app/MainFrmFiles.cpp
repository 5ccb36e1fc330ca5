// The main window's commands on files: open, close, step, save, export, and the load that most of them share.
#include "app/DroppedFiles.h"
#include "app/LongWork.h"
#include "app/MainFrm.h"
#include "app/MeasureDock.h"
#include "app/StatusBar.h"
#include "reader/AnalysisFile.h"
#include "render/Graph.h"
#include "support/OutputFile.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QStatusBar>

namespace Tracelyn {

namespace {

FileFilter AllFiles() {
    return {CMainFrame::tr("All Files"), {QStringLiteral("*")}};
}

} // namespace

QList<FileFilter> CMainFrame::GetAnalysisFilters() {
    return {{tr("Analysis Files"), {QStringLiteral("*.paf"), QStringLiteral("*.xml")}}, AllFiles()};
}

void CMainFrame::OpenFromCommandLine(const QString& path) {
    if (path.isEmpty())
        return;
    m_strLastPath = path;
    m_FileSet.SetFile(path);
    LoadFile();
}

void CMainFrame::OnFileOpen() {
    const auto path = m_Ui.AskOpenFile({.title = {},
                                        .filters = GetAnalysisFilters(),
                                        .defaultExtension = {},
                                        .fileName = {},
                                        .directory = m_strLastPath});
    if (path)
        OpenChosen(*path);
}

void CMainFrame::OpenChosen(const QString& path) {
    StopComparing();
    m_strLastPath = path;
    m_FileSet.SetFile(path);
    LoadFile();
    SetFileJustOpened(true);
}

std::optional<QString> CMainFrame::AnswerDrag(QDropEvent& event) const {
    std::optional<QString> path;
    if (event.possibleActions().testFlag(Qt::CopyAction) && QApplication::activeModalWidget() == nullptr)
        path = RecordingAmong(*event.mimeData());
    // Never a move: the file stays where it is.
    event.setDropAction(path ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(path.has_value());
    return path;
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
    AnswerDrag(*event);
}

// Comes only after the answer to the first event of the drag was yes.
void CMainFrame::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// The other program waits until the drop is over, and opening may ask the user something.
void CMainFrame::dropEvent(QDropEvent* event) {
    const auto path = AnswerDrag(*event);
    if (!path)
        return;
    const auto open = [this, path = *path] {
        if (CLongWork::IsUnderWay() || QApplication::activeModalWidget() != nullptr)
            return;
        activateWindow();
        OpenChosen(path);
    };
    QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
}

void CMainFrame::OnFileClose() {
    StopComparing();
    if (m_pMeasure != nullptr)
        m_pMeasure->Forget();
    m_pView->ClearData();
    m_FileSet.Clear();
    UpdateTitle();
}

void CMainFrame::OnStep(bool toNext) {
    if (!m_Good.IsKept())
        StopComparing();
    if (toNext)
        m_FileSet.StepToNext();
    else
        m_FileSet.StepToPrevious();
    LoadFile();
}

void CMainFrame::LoadFile() {
    if (m_pMeasure != nullptr)
        m_pMeasure->Forget();
    m_pView->ClearData();
    m_pStatusPanes->SetSamplesPerShownOne(1);
    {
        const CScopedCursor wait(Qt::WaitCursor);
        try {
            LoadCurrentFile();
        } catch (...) {
            ShowMessage(MessageIcon::Stop, tr("File not loaded.\nError during load operation."));
        }
    }
    UpdateTitle();
    MeasureLoaded();
    UpdateComparison();
    RemarkComparison();
    UpdateCommands();
}

void CMainFrame::LoadCurrentFile() {
    const std::optional<Analysis> analysis = ReadCurrentFile();
    if (!analysis)
        return;
    switch (analysis->status) {
    case LoadStatus::UnknownExtension:
        return;
    case LoadStatus::NotExpanded:
        ShowError(tr("Problem expanding analysis file"));
        return;
    case LoadStatus::Read:
        m_strTitle = analysis->name;
        ShowResults(analysis->results);
    }
}

std::optional<Analysis> CMainFrame::ReadCurrentFile() {
    const QString path = m_FileSet.GetFullPath();
    const auto read = [this](CSignalFileReader& reader, const QString& document) {
        m_pView->Load(reader, document);
    };
    std::optional<Analysis> analysis;
    const bool isOpen = RunLongWork(*this, tr("Loading %1").arg(QFileInfo(path).fileName()),
                                    [&](const support::Progress& progress) {
                                        analysis = LoadAnalysis(path, m_nAccessLevel, read, progress);
                                    });
    return isOpen ? analysis : std::nullopt;
}

void CMainFrame::ShowResults(std::span<const ReadResult> results) {
    constexpr size_t kBoxesBeforeSkip = 20;
    for (size_t i = 0; i < results.size(); ++i) {
        if (i < kBoxesBeforeSkip)
            ShowError(results[i].GetText());
        else if (m_Ui.ShowMessageOrSkip(MessageIcon::Stop, tr("ERROR"), results[i].GetText()))
            return;
    }
}

void CMainFrame::UpdateTitle() {
    QString text = m_strTitle;
    const QString& base = m_FileSet.GetBaseName();
    if (!base.isEmpty()) {
        m_strFileLabel = m_FileSet.GetCount() > 0
                             ? QStringLiteral("%1 %2").arg(base, m_FileSet.GetNumberText())
                             : tr("%1 (new)").arg(base);
        text += QStringLiteral("- ") + m_strFileLabel;
    }
    // The toolkit takes "[*]" for a place holder unless it is doubled.
    setWindowTitle(text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
}

void CMainFrame::OnFileSave() {
    const FileFilter containers{tr("paf Files"), {QStringLiteral("*.paf")}};
    const FileFilter tables{tr("csv Files"), {QStringLiteral("*.csv")}};
    const auto path = m_Ui.AskSaveFile({.title = tr("Save..."),
                                        .filters = {containers, tables, AllFiles()},
                                        .defaultExtension = QStringLiteral("paf"),
                                        .fileName = DefaultName(),
                                        .directory = QStringLiteral("/")});
    if (!path)
        return;
    try {
        SaveTo(*path);
    } catch (...) {
        ShowMessage(MessageIcon::Stop, tr("File not saved.\nError during write operation."));
    }
}

void CMainFrame::SaveTo(const QString& path) {
    if (QFileInfo(path).suffix() == QLatin1String("csv")) {
        ExportTo(path);
        return;
    }
    bool isSaved = false;
    const bool isOpen = RunLongWork(*this, {}, [&](const support::Progress& progress) {
        isSaved = support::CopyToNewFile(m_FileSet.GetFullPath(), path, progress);
    });
    if (!isOpen)
        return;
    if (isSaved)
        ShowMessage(MessageIcon::Information, tr("File '%1' was saved successfully").arg(path));
    else
        ShowMessage(MessageIcon::Information, tr("File '%1' is not saved!\nFile already exists!").arg(path));
}

void CMainFrame::ExportTo(const QString& path) {
    if (support::IsSameFile(m_FileSet.GetFullPath(), path)) {
        ShowMessage(MessageIcon::Stop, tr("File not exported.\n'%1' is the opened recording.").arg(path));
        return;
    }
    ExportEnd end = ExportEnd::Complete;
    bool isOpen = true;
    {
        const CScopedCursor wait(Qt::WaitCursor);
        isOpen = RunLongWork(
            *this, {}, [&](const support::Progress& progress) { end = m_pView->ExportCsv(path, progress); });
    }
    if (!isOpen)
        return;
    if (end == ExportEnd::Complete)
        ShowMessage(MessageIcon::Information, tr("File '%1' was created successfully").arg(path));
    else if (end == ExportEnd::Stopped)
        ShowMessage(MessageIcon::Information,
                    tr("The export was stopped.\nFile '%1' was not created.").arg(path));
    else
        ShowMessage(MessageIcon::Stop, tr("File not exported.\nThe table would be too large."));
}

void CMainFrame::OnSaveCsv() {
    const FileFilter tables{tr("CSV Files"), {QStringLiteral("*.csv")}};
    const auto path = m_Ui.AskSaveFile({.title = {},
                                        .filters = {tables, AllFiles()},
                                        .defaultExtension = QStringLiteral("csv"),
                                        .fileName = DefaultName(),
                                        .directory = m_strLastPath});
    if (!path)
        return;
    try {
        ExportTo(*path);
    } catch (...) {
        ShowMessage(MessageIcon::Stop, tr("File not exported.\nError during write operation."));
    }
}

void CMainFrame::ShowError(const QString& text) {
    m_Ui.ShowMessage(MessageIcon::Stop, tr("ERROR"), text);
}

void CMainFrame::ShowMessage(MessageIcon icon, const QString& text) {
    m_Ui.ShowMessage(icon, tr("Tracelyn"), text);
}

} // namespace Tracelyn
