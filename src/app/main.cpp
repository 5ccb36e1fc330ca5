// tracelyn: the viewer's process entry.
#include "app/ShellUi.h"
#include "app/TracelynApp.h"
#include "support/ScratchFolder.h"
#include "support/Startup.h"

#include <QApplication>
#include <QSettings>

namespace Tracelyn {

namespace {

int MainFunction(int& argc, char** argv) {
    // The program keeps nothing between two runs; without this line the toolkit's file dialog would.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    const QApplication application(argc, argv);
    support::CScratchFolder::RemoveStale();
    CNativeShellUi ui;
    CTracelynApp app(ui);
    app.InitInstance(QCoreApplication::arguments().mid(1));
    return QApplication::exec();
}

} // namespace

} // namespace Tracelyn

int main(int argc, char** argv) {
    return support::RunMain(support::ProcessCommandLine(argc, argv),
                            [&] { return Tracelyn::MainFunction(argc, argv); });
}
