// tracelyn-cli: what the viewer reads, shows and exports, without a window.
#include "cli/Commands.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"
#include "support/ScratchFolder.h"
#include "support/UserDevices.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>

#include <cstdio>
#include <exception>
#include <memory>
#include <new>

namespace Tracelyn {

namespace {

QtMessageHandler g_printMessage = nullptr;

// Drops the toolkit's remarks on a session without a runtime folder: the error output is for the tool's
// errors.
void PrintMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: ")))
        g_printMessage(type, context, message);
}

ExitCode Run(const Options& options) {
    switch (options.command) {
    case Command::Info:
        return RunInfo(options);
    case Command::Csv:
        return RunCsv(options);
    case Command::Render:
        return RunRender(options);
    case Command::Pack:
        return RunPack(options);
    case Command::Expand:
        return RunExpand(options);
    case Command::Stats:
        return RunStats(options);
    case Command::Compare:
        return RunCompare(options);
    case Command::Version:
        std::puts("tracelyn-cli " TRACELYN_VERSION);
        return ExitCode::Success;
    case Command::Help:
        std::fputs(UsageText().toUtf8().constData(), stdout);
        return ExitCode::Success;
    }
    return ExitCode::Failed;
}

// Read through a QCoreApplication: a QGuiApplication takes options of its own, such as -platform, out of the
// command line, and the tool could not call them unknown.
QStringList Arguments(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return QCoreApplication::arguments().mid(1);
}

// Drawing needs a QGuiApplication for its fonts, but no display. On Windows the toolkit's platform without a
// display has no fonts, and the usual one is always there.
std::unique_ptr<QCoreApplication> MakeApplication(const Options& options, int& argc, char** argv) {
    if (options.command != Command::Render)
        return std::make_unique<QCoreApplication>(argc, argv);
#ifndef Q_OS_WIN
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // In a session without a runtime folder the toolkit would make one in the temporary folder and leave it
    // there: one for each thumbnail, as file managers give every thumbnailer a temporary folder of its own.
    const auto folder = support::PrivateTemporaryFolder();
    if (folder && qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(*folder));
#endif
    return std::make_unique<QGuiApplication>(argc, argv);
}

ExitCode Main(int argc, char** argv) {
    QString error;
    const auto options = ParseOptions(Arguments(argc, argv), error);
    if (!options)
        return WrongUsage(error);
    if (support::IsSameFile(options->input, options->output))
        return WrongUsage(
            QStringLiteral("'%1' is the file to read, which it would replace").arg(options->output));
    for (const QString& code : options->uselessCodes)
        std::fprintf(stderr, "tracelyn-cli: the code '%s' grants nothing\n", code.toUtf8().constData());
    int programOnly = 1;
    const auto application = MakeApplication(*options, programOnly, argv);
    return Run(*options);
}

} // namespace

} // namespace Tracelyn

int main(int argc, char** argv) {
    Tracelyn::g_printMessage = qInstallMessageHandler(Tracelyn::PrintMessage);
    support::PassBytesOn();
    support::CatchInterrupts();
    try {
        const auto code = static_cast<int>(Tracelyn::Main(argc, argv));
        support::RemoveEmptyTemporaryFolder();
        if (support::IsInterrupted())
            support::EndInterrupted();
        return code;
    } catch (const std::bad_alloc&) {
        Tracelyn::PrintError(QStringLiteral("Out of memory"));
    } catch (const std::exception& exception) {
        Tracelyn::PrintError(QString::fromLocal8Bit(exception.what()));
    }
    return static_cast<int>(Tracelyn::ExitCode::Failed);
}
