#include "CliTesting.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

Outcome Cli::Run(const QStringList& arguments, [[maybe_unused]] unsigned limit) const {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "QT_QPA_PLATFORM", "LANG"})
        environment.remove(name);
    environment.insert("LC_ALL", "C");
    for (const char* name : kTemporaryFolderVariables)
        environment.insert(name, QDir::toNativeSeparators(m_Temporary.path()));
    process.setProcessEnvironment(environment);
#ifdef Q_OS_UNIX
    if (limit != 0) {
        process.setChildProcessModifier([limit] {
            const rlimit bytes{limit, limit};
            ::setrlimit(RLIMIT_FSIZE, &bytes);
            ::signal(SIGXFSZ, SIG_IGN);
        });
    }
#endif
    process.start(TRACELYN_CLI, arguments);
    const bool ended = process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
#ifdef Q_OS_UNIX
    const auto left = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
#else
    const auto left = QDir::Files;
#endif
    EXPECT_FALSE(QDirIterator(m_Temporary.path(), left, QDirIterator::Subdirectories).hasNext())
        << arguments.join(" ").toStdString();
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
