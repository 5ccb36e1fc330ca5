#include "CliTesting.h"

#include <QCoreApplication>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

QString Cli::Write(const QString& name, const QByteArray& content) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    EXPECT_EQ(file.write(content), content.size());
    return file.fileName();
}

QByteArray Cli::Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

Outcome Cli::Run(const QStringList& arguments, Disk disk, const QString& standardOutput) const {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "QT_QPA_PLATFORM", "LANG"})
        environment.remove(name);
    environment.insert("LC_ALL", "C");
    environment.insert("TMPDIR", m_Temporary.path());
    process.setProcessEnvironment(environment);
    if (!standardOutput.isEmpty())
        process.setStandardOutputFile(standardOutput);
#ifdef Q_OS_UNIX
    if (disk != Disk::Free) {
        process.setChildProcessModifier([disk] {
            const rlimit limit{1000, 1000};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, disk == Disk::Full ? SIG_IGN : SIG_DFL);
        });
    }
#endif
    process.start(TRACELYN_CLI, arguments);
    const bool ended = process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
    if (ended) {
        EXPECT_EQ(QDir(m_Temporary.path()).entryList({"tracelyn*"}, QDir::AllEntries), QStringList())
            << arguments.join(" ").toStdString();
    }
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
