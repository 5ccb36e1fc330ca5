// The main window's commands that take the picture along, or the values in it.
#include "app/MainFrm.h"
#include "render/Console.h"
#include "render/Picture.h"
#include "support/OutputFile.h"

#include <QClipboard>
#include <QGuiApplication>

#include <new>

namespace Tracelyn {

void CMainFrame::OnCopyPicture() {
    COffscreenWindow window = m_pView->MakeOffscreenWindow();
    QGuiApplication::clipboard()->setImage(window.Paint(m_pView->GetGraph()));
}

void CMainFrame::OnSavePicture() {
    const QList<FileFilter> pictures{{tr("PNG Files"), {QStringLiteral("*.png")}},
                                     {tr("SVG Files"), {QStringLiteral("*.svg")}},
                                     {tr("PDF Files"), {QStringLiteral("*.pdf")}}};
    const auto path = m_Ui.AskSaveFile(
        {.title = {},
         .filters = pictures,
         .defaultExtension = QStringLiteral("png"),
         .fileName = DefaultName(),
         .directory = m_strLastPath,
         .knownExtensions = {QStringLiteral("png"), QStringLiteral("svg"), QStringLiteral("pdf")}});
    if (!path)
        return;
    if (support::IsSameFile(m_FileSet.GetFullPath(), *path))
        ShowMessage(MessageIcon::Stop, tr("Picture not saved.\n'%1' is the opened recording.").arg(*path));
    else if (SavePictureTo(*path))
        ShowMessage(MessageIcon::Information, tr("File '%1' was created successfully").arg(*path));
    else
        ShowMessage(MessageIcon::Stop, tr("Picture not saved.\nError during write operation."));
}

bool CMainFrame::SavePictureTo(const QString& path) try {
    const CScopedCursor wait(Qt::WaitCursor);
    COffscreenWindow window = m_pView->MakeOffscreenWindow();
    const QByteArray picture = EncodePicture(m_pView->GetGraph(), window, PictureFormatOf(path), m_strTitle);
    support::COutputFile output(path);
    return !picture.isEmpty() && output.CommitWith(picture);
} catch (const std::bad_alloc&) {
    return false;
}

void CMainFrame::OnCopyValues() {
    const CGraph& graph = m_pView->GetGraph();
    QGuiApplication::clipboard()->setText(
        ValueTable(graph.GetData(), {graph.GetCursorPosition(), graph.GetFixedCursor()}));
}

} // namespace Tracelyn
