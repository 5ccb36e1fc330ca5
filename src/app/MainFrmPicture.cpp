// The main window's commands that take the picture along, or the values in it.
#include "app/MainFrm.h"
#include "render/Console.h"

#include <QClipboard>
#include <QGuiApplication>

namespace Tracelyn {

void CMainFrame::OnCopyPicture() {
    COffscreenWindow window = m_pView->MakeOffscreenWindow();
    QGuiApplication::clipboard()->setImage(window.Paint(m_pView->GetGraph()));
}

void CMainFrame::OnCopyValues() {
    const CGraph& graph = m_pView->GetGraph();
    QGuiApplication::clipboard()->setText(
        ValueTable(graph.GetData(), {graph.GetCursorPosition(), graph.GetFixedCursor()}));
}

} // namespace Tracelyn
