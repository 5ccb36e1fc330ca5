// tracelyn-cli: what the viewer reads, shows and exports, without a window.
#include "Commands.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <memory>
#include <string_view>

namespace {

QtMessageHandler g_printMessage = nullptr;

// The error output is for the tool's own errors: a session without a runtime folder is none.
void PrintMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
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
    case Command::Version:
        std::puts("tracelyn-cli " TRACELYN_VERSION);
        return ExitCode::Success;
    case Command::Help:
        std::fputs(UsageText().toUtf8().constData(), stdout);
        return ExitCode::Success;
    }
    return ExitCode::Failed;
}

// Only pictures need fonts, and none needs a display.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc, char** argv) {
    if (argc < 2 || std::string_view(argv[1]) != "render")
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    g_printMessage = qInstallMessageHandler(PrintMessage);
    const auto application = MakeApplication(argc, argv);
    QString error;
    const auto options = ParseOptions(QCoreApplication::arguments().mid(1), error);
    return static_cast<int>(options ? Run(*options) : WrongUsage(error));
}
