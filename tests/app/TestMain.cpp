// The main function of the window tests: one application object, no display.
#include "Testing.h"

#include <QApplication>
#include <QSettings>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir folder;
    UseTemporaryFolder(folder.path());
    // As the program: what a run before this one left in the file dialog makes no difference.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
