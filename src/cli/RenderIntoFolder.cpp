#include "cli/Commands.h"
#include "cli/Rendering.h"
#include "cli/SeveralFiles.h"
#include "render/Graph.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"
#include "support/Parallel.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMultiHash>

#include <algorithm>
#include <atomic>

namespace Tracelyn {

namespace {

QString ExtensionOf(PictureFormat format) {
    switch (format) {
    case PictureFormat::Svg:
        return QStringLiteral("svg");
    case PictureFormat::Pdf:
        return QStringLiteral("pdf");
    case PictureFormat::Png:
        break;
    }
    return QStringLiteral("png");
}

// A picture has its file's name, with another extension.
QStringList OutputsOf(const QStringList& files, const QString& folder, PictureFormat format) {
    QStringList outputs;
    for (const QString& file : files)
        outputs.append(
            QDir(folder).filePath(QFileInfo(file).completeBaseName() + u'.' + ExtensionOf(format)));
    return outputs;
}

// Why the outputs would get into each other's way. Empty when they would not. Some file systems do not tell
// small letters from large ones.
QString ReasonTheyCollide(const QStringList& files, const QStringList& outputs) {
    QHash<QString, QString> owners;
    for (qsizetype i = 0; i < files.size(); ++i) {
        QString& owner = owners[outputs[i].toCaseFolded()];
        if (!owner.isNull())
            return QStringLiteral("'%1' and '%2' would both become '%3'").arg(owner, files[i], outputs[i]);
        owner = files[i];
    }
    return {};
}

// The first output that would replace a file to read; nothing when there is none. One file has one size,
// which saves the comparison of each with each.
std::optional<QString> FindInput(const QStringList& outputs, const QStringList& inputs) {
    QMultiHash<qint64, QString> bySize;
    for (const QString& input : inputs)
        bySize.insert(QFileInfo(input).size(), input);
    for (const QString& output : outputs) {
        const QFileInfo existing(output);
        const QStringList candidates = existing.exists() ? bySize.values(existing.size()) : QStringList();
        if (std::ranges::any_of(candidates,
                                [&](const QString& input) { return support::IsSameFile(input, output); }))
            return output;
    }
    return std::nullopt;
}

// Draws recordings, each on its thread.
class CPictures {
public:
    // Borrows the good recording, which is shown behind the others if the options name one.
    CPictures(const Options& options, PictureFormat format, const CGraphData& good, int goodZero)
        : m_Options(options), m_Format(format), m_Good(good), m_nGoodZero(goodZero) {}

    void Make(const QString& file, const QString& output, const support::Progress& progress,
              FileReport& report) {
        CRecording recording; // outlives the graph, which shows its samples
        CGraph graph;
        ReadRecording(recording, graph.GetData(), file, m_Options.accessLevel, progress, report);
        if (!report.isRead || support::IsInterrupted())
            return;
        const auto picture = Draw(graph, recording.GetName(), file, report);
        if (!picture || support::IsInterrupted())
            return;
        if (const auto reason = WritePicture(*picture, output))
            report.problems.append(QStringLiteral("Cannot write %1: %2").arg(output, *reason));
        else
            ++m_nMade;
    }

    bool IsAnyMade() const { return m_nMade > 0; }

private:
    // Nothing, with a problem, when there is nothing to write.
    std::optional<QByteArray> Draw(CGraph& graph, const QString& name, const QString& file,
                                   FileReport& report) {
        COffscreenWindow window(m_Options.view.size);
        if (window.GetImage().isNull()) {
            report.AddProblem(file, QStringLiteral("Not enough memory for the picture"));
            return std::nullopt;
        }
        QString error;
        if (!ShowView(graph, window, m_Options, error)) {
            report.AddProblem(file, error);
            return std::nullopt;
        }
        if (m_Options.behind && !ShowBehind(graph, window, m_Options, file, m_Good, m_nGoodZero, report))
            return std::nullopt;
        return EncodePicture(graph, window, m_Format, name);
    }

    const Options& m_Options;
    PictureFormat m_Format;
    const CGraphData& m_Good;
    int m_nGoodZero;
    std::atomic<int> m_nMade = 0;
};

// False when the options make no sense for these files; `error` says why.
bool CheckUsage(const Options& options, const QStringList& files, const QStringList& outputs,
                QString& error) {
    if (options.alignSignal && !options.behind)
        error = QStringLiteral("--align needs --compare");
    const auto isGood = [&](const QString& file) { return support::IsSameFile(*options.behind, file); };
    if (options.behind && std::ranges::any_of(files, isGood))
        error = QStringLiteral("'%1' is the recording itself").arg(*options.behind);
    if (const QString reason = ReasonTheyCollide(files, outputs); !reason.isEmpty())
        error = reason;
    const QStringList inputs = options.behind ? files + QStringList{*options.behind} : files;
    if (const auto input = FindInput(outputs, inputs))
        error = QStringLiteral("'%1' is the file to read, which it would replace").arg(*input);
    return error.isEmpty();
}

} // namespace

ExitCode RunRenderIntoFolder(const Options& options) {
    const QStringList files = FilesNamedBy(options.inputs);
    const PictureFormat format = options.pictureFormat.value_or(PictureFormat::Png);
    const QStringList outputs = OutputsOf(files, *options.folder, format);
    QString error;
    if (!CheckUsage(options, files, outputs, error))
        return WrongUsage(error);
    if (!QFileInfo(*options.folder).isDir())
        return FailToWrite(*options.folder, QStringLiteral("it is no folder"));

    const qsizetype goodFiles = options.behind ? 1 : 0;
    std::vector<FileReport> reports(static_cast<size_t>(goodFiles + files.size()));
    std::optional<CJointProgress> progress(std::in_place, std::ssize(reports));
    CRecording good;
    std::optional<int> goodZero = 0;
    if (options.behind)
        goodZero = ReadGood(good, options, progress->Of(0), reports.front());
    CPictures pictures(options, format, good.GetData(), goodZero.value_or(0));
    const auto make = [&](int /*worker*/, int64_t item) {
        const auto file = static_cast<qsizetype>(item);
        pictures.Make(files[file], outputs[file], progress->Of(goodFiles + file),
                      reports[static_cast<size_t>(goodFiles + file)]);
        return !support::IsInterrupted();
    };
    if (goodZero)
        support::ForEachParallel(files.size(), make);
    progress.reset();
    if (support::IsInterrupted())
        return ExitCode::Failed;
    PrintProblems(reports);
    if (!pictures.IsAnyMade())
        return ExitCode::Failed;
    return HasProblems(reports) ? ExitCode::ReadWithProblems : ExitCode::Success;
}

} // namespace Tracelyn
