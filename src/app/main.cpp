// tracelyn: the viewer's process entry.
#include "app/ShellUi.h"
#include "app/TracelynApp.h"
#include "support/Assertion.h"
#include "support/FaultBox.h"
#include "support/ScratchFolder.h"
#include "support/Startup.h"
#include "support/UserDevices.h"

#include <QApplication>
#include <QSettings>

namespace Tracelyn {

namespace {

// The toolkit gets the program's name alone: every other argument is the program's own.
int MainFunction(const QStringList& arguments, char** argv) {
    if (const auto text = TextForTerminal(arguments)) {
        support::PrintToTerminal(*text);
        return 0;
    }
    // The program keeps nothing between two runs; without this line the toolkit's file dialog would.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    int programOnly = 1;
    const QApplication application(programOnly, argv);
    support::CScratchFolder::RemoveStale();
    CNativeShellUi ui;
    CTracelynApp app(ui);
    app.InitInstance(arguments);
    const int code = QApplication::exec();
    support::RemoveEmptyTemporaryFolder();
    return code;
}

int ShowFault(const QString& text, char** argv) {
    int programOnly = 1;
    const QApplication application(programOnly, argv);
    CNativeShellUi().ShowMessage(MessageIcon::Stop, CTracelynApp::tr("Tracelyn"), text);
    return 0;
}

} // namespace

} // namespace Tracelyn

int main(int argc, char** argv) {
    if (const auto fault = support::FaultToShow())
        return Tracelyn::ShowFault(*fault, argv);
    support::SetAssertionReporter(support::ReportInBox);
    return support::RunMain(support::ProcessCommandLine(argc, argv), [&] {
        return Tracelyn::MainFunction(support::ProcessArguments(argc, argv), argv);
    });
}
