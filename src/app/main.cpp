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
    // Nothing is kept between two runs; the toolkit's file dialog would keep its own state.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    const QApplication application(argc, argv);
    support::ScratchFolder::RemoveStale();
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
