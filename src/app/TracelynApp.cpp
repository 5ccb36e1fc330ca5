#include "app/TracelynApp.h"

#include "app/AboutDlg.h"
#include "app/CommandLineInfo.h"
#include "app/MainFrm.h"

#include <QApplication>

namespace Tracelyn {

CTracelynApp::CTracelynApp(CShellUi& ui) : m_Ui(ui) {}

CTracelynApp::~CTracelynApp() = default;

void CTracelynApp::InitInstance(const QStringList& arguments) {
    // Where settings would be kept; there are none.
    QCoreApplication::setOrganizationName(QStringLiteral("Brannik"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TRACELYN_VERSION));

    m_pFrame = std::make_unique<CMainFrame>(m_Ui);
    connect(m_pFrame.get(), &CMainFrame::AboutRequested, this, &CTracelynApp::OnAbout);
    CTracelynCommandLineInfo commandLine;
    commandLine.ParseCommandLine(arguments);
    m_pFrame->SetAccessLevel(commandLine.GetAccessLevel());
    m_pFrame->LoadFrame();
    m_pFrame->OpenFromCommandLine(commandLine.GetFileName());
    m_pFrame->show();
    m_pFrame->repaint();
}

void CTracelynApp::OnAbout() {
    CAboutDlg dialog(m_pFrame.get());
    dialog.exec();
}

} // namespace Tracelyn
