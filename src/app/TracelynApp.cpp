#include "app/TracelynApp.h"

#include "app/Dialogs.h"
#include "app/MainFrm.h"
#include "reader/SignalFileReader.h"

#include <QApplication>

#include <algorithm>

namespace Tracelyn {

namespace {

bool IsSwitch(const QString& argument) {
#ifdef Q_OS_WIN
    // Two slashes begin the path of a file on another machine.
    if (argument.startsWith(u'/') && !argument.startsWith(u"//"))
        return true;
#endif
    return argument.startsWith(u'-');
}

} // namespace

void CTracelynCommandLineInfo::ParseCommandLine(const QStringList& arguments) {
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool flag = IsSwitch(argument);
        ParseParam(flag ? argument.mid(1) : argument, flag, i + 1 == arguments.size());
    }
}

void CTracelynCommandLineInfo::ParseParam(const QString& param, bool /*flag*/, bool /*last*/) {
    m_nAccessLevel = std::max(m_nAccessLevel, LevelGrantedBy(param));
    m_strFileName = param.startsWith(QLatin1String(".paf")) ? QString() : param;
}

std::optional<QString> TextForTerminal(const QStringList& arguments) {
    if (arguments.endsWith(QStringLiteral("--version")))
        return QStringLiteral("tracelyn " TRACELYN_VERSION "\n");
    if (arguments.endsWith(QStringLiteral("--help")))
        return CTracelynApp::tr("usage:\n"
                                "  tracelyn [CODE]... [FILE]\n"
                                "  tracelyn --help | --version\n"
                                "\n"
                                "FILE is an analysis file, .paf or .xml; codes show more of its signals.\n"
                                "F1 in the window shows the keys.\n");
    return std::nullopt;
}

CTracelynApp::CTracelynApp(CShellUi& ui) : m_Ui(ui) {}

CTracelynApp::~CTracelynApp() = default;

void CTracelynApp::InitInstance(const QStringList& arguments) {
    // The name under which settings would be stored; the program stores none.
    QCoreApplication::setOrganizationName(QStringLiteral("Brannik"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TRACELYN_VERSION));
    // By it a Linux desktop finds the icon of the windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.tracelyn.Tracelyn"));

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
