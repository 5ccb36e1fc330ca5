// The main function of the window tests: one application object, no display.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Loads share one file name per user and temporary folder: each test program has a folder of its own.
    const QTemporaryDir folder;
    qputenv("TMPDIR", folder.path().toLocal8Bit());
    // As the program: what a run before this one left in the file dialog makes no difference.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
