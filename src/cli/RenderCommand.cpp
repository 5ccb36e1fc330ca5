#include "cli/Commands.h"
#include "cli/Rendering.h"
#include "cli/SeveralFiles.h"
#include "render/Graph.h"
#include "render/Picture.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"

namespace Tracelyn {

ExitCode RunRender(const Options& options) {
    if (options.folder)
        return RunRenderIntoFolder(options);
    if (options.behind && support::IsSameFile(*options.behind, options.input))
        return WrongUsage(QStringLiteral("'%1' is the recording itself").arg(*options.behind));
    if (options.behind && support::IsSameFile(*options.behind, options.output))
        return WrongUsage(
            QStringLiteral("'%1' is the file to read, which it would replace").arg(options.output));
    if (options.alignSignal && !options.behind)
        return WrongUsage(QStringLiteral("--align needs --compare"));
    CRecording recording, good; // outlive the graph, which borrows them
    FileReport report;
    CGraph graph;
    if (!LoadInput(options, recording, graph.GetData()))
        return ExitCode::Failed;
    if (!recording.IsRead()) {
        ReportProblems(recording);
        return ExitCode::Failed;
    }
    COffscreenWindow window(options.view.size);
    if (window.GetImage().isNull())
        return Fail(QStringLiteral("Not enough memory for the picture"));
    QString error;
    if (!ShowView(graph, window, options, error))
        return WrongUsage(error);
    bool isComplete = true;
    if (options.behind) {
        std::optional<int> goodZero;
        {
            CJointProgress progress(1);
            goodZero = ReadGood(good, options, progress.Of(0), report);
        }
        isComplete = report.isRead &&
                     ShowBehind(graph, window, options, options.input, good.GetData(), goodZero, report);
    }
    if (support::IsInterrupted())
        return ExitCode::Failed;
    for (const QString& problem : report.problems)
        PrintError(problem);
    if (!isComplete)
        return ExitCode::ReadWithProblems;

    const QByteArray picture =
        EncodePicture(graph, window, PictureFormatOf(options.output), recording.GetName());
    if (support::IsInterrupted())
        return ExitCode::Failed;
    if (const auto reason = WritePicture(picture, options.output))
        return FailToWrite(options.output, *reason);
    const ExitCode code = ReportProblems(recording);
    return report.problems.isEmpty() ? code : ExitCode::ReadWithProblems;
}

} // namespace Tracelyn
