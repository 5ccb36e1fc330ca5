#include "cli/Commands.h"

#include "cli/ProgressLine.h"
#include "model/GraphData.h"
#include "reader/container/zip.h"
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"
#include "support/Interrupt.h"
#include "support/OutputFile.h"
#include "support/UserDevices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace Tracelyn {

namespace {

constexpr qint64 kCopyChunk = 1 << 20;

QString WithoutLineEnd(QString text) {
    while (text.endsWith(QLatin1Char('\n')) || text.endsWith(QLatin1Char('\r')))
        text.chop(1);
    return text;
}

bool MayGoOn(double /*done*/) {
    return !support::IsInterrupted();
}

ExitCode CopyToOutput(const QString& from, const QString& to) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return Fail(QStringLiteral("Cannot read file: %1").arg(from));
    support::COutputFile output(to);
    while (output.IsOpen() && !source.atEnd()) {
        if (support::IsInterrupted())
            return ExitCode::Failed;
        const QByteArray chunk = source.read(kCopyChunk);
        if (chunk.isEmpty())
            return FailToWrite(to, source.errorString());
        if (!support::WriteAll(output.GetDevice(), {chunk.data(), static_cast<size_t>(chunk.size())}))
            return FailToWrite(to, output.GetErrorText());
    }
    return output.IsOpen() && output.Commit() ? ExitCode::Success : FailToWrite(to, output.GetErrorText());
}

QString ReasonNotExpanded(const QString& path, ExpandProblem problem) {
    const QString text = QStringLiteral("Problem expanding analysis file: ");
    switch (problem) {
    case ExpandProblem::NotReadable:
        return QStringLiteral("Cannot read file: %1").arg(path);
    case ExpandProblem::NotWritten:
        return text + QStringLiteral("the temporary folder %1 cannot be written").arg(QDir::tempPath());
    case ExpandProblem::NoRoom:
        return text + QStringLiteral("the temporary folder %1 has no room for it").arg(QDir::tempPath());
    case ExpandProblem::None: // a sound container
        return text + QStringLiteral("%1 holds no analysis").arg(path);
    case ExpandProblem::Damaged:
        break;
    }
    return text + QStringLiteral("%1 is damaged or no container").arg(path);
}

// Shows how far the operation is, on a terminal, and asks to stop after Ctrl+C. Borrows the line.
support::Progress ProgressOn(CProgressLine& line) {
    return [&line, isShown = support::IsTerminal(stderr)](double done) {
        if (isShown)
            line.Show(done);
        return MayGoOn(done);
    };
}

Analysis LoadShowingProgress(const Options& options, CGraphData& data) {
    CProgressLine line(stderr);
    return LoadAnalysis(options.input, options.accessLevel, data, ProgressOn(line));
}

bool PackShowingProgress(CZip& zip, QIODevice& archive) {
    CProgressLine line(stderr, "Packing");
    return zip.Pack(archive, ProgressOn(line));
}

} // namespace

void PrintError(const QString& text) {
    std::fprintf(stderr, "ERROR: %s\n", WithoutLineEnd(text).toUtf8().constData());
}

ExitCode Fail(const QString& text) {
    PrintError(text);
    return ExitCode::Failed;
}

ExitCode FailToWrite(const QString& path, const QString& reason) {
    return Fail(QStringLiteral("Cannot write %1: %2").arg(path, reason));
}

std::optional<Analysis> LoadInput(const Options& options, CGraphData& data) {
    const QFileInfo input(options.input);
    const bool isReadable = input.isFile() && input.isReadable();
    const Analysis analysis = LoadShowingProgress(options, data);
    if (support::IsInterrupted())
        return std::nullopt;
    const QString reason = ReasonNotRead(options.input, isReadable, analysis);
    if (!reason.isEmpty()) {
        PrintError(reason);
        return std::nullopt;
    }
    return analysis;
}

QString ReasonNotRead(const QString& path, bool wasReadable, const Analysis& analysis) {
    switch (analysis.status) {
    case LoadStatus::Read:
        break;
    case LoadStatus::UnknownExtension:
        return QStringLiteral("Unknown file extension: %1").arg(path);
    case LoadStatus::NotExpanded:
        return ReasonNotExpanded(path, analysis.problem);
    }
    // The reader reports such a file as a parse error; here it is an input that cannot be read.
    return wasReadable ? QString() : QStringLiteral("Cannot read file: %1").arg(path);
}

bool PrintOutput(const QByteArray& bytes) {
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return true;
    FailToWrite(QStringLiteral("standard output"), qt_error_string());
    return false;
}

ExitCode ReportResults(const Analysis& analysis) {
    for (const ReadResult& result : analysis.results)
        PrintError(result.GetText());
    return analysis.results.empty() ? ExitCode::Success : ExitCode::ReadWithProblems;
}

bool IsNothingRead(const Analysis& analysis, const CGraphData& data) {
    return !analysis.results.empty() && data.GetGroups().empty();
}

ExitCode WrongUsage(const QString& error) {
    std::fprintf(stderr, "tracelyn-cli: %s\n%s", error.toUtf8().constData(),
                 UsageText().toUtf8().constData());
    return ExitCode::WrongUsage;
}

ExitCode RunCsv(const Options& options) {
    CGraphData data;
    const auto analysis = LoadInput(options, data);
    if (!analysis)
        return ExitCode::Failed;
    if (IsNothingRead(*analysis, data)) {
        ReportResults(*analysis);
        return ExitCode::Failed;
    }
    support::COutputFile output(options.output);
    if (!output.IsOpen())
        return FailToWrite(options.output, output.GetErrorText());
    try {
        CCsvFile file;
        file.Open(output.GetDevice());
        switch (ExportCsv(data, file, MayGoOn)) {
        case ExportEnd::Complete:
            break;
        case ExportEnd::Stopped:
            return ExitCode::Failed;
        case ExportEnd::TooLarge:
            return FailToWrite(options.output, QStringLiteral("the table would be too large"));
        }
        file.Close();
    } catch (const CFileException&) {
        return FailToWrite(options.output, output.GetErrorText());
    }
    if (!output.Commit())
        return FailToWrite(options.output, output.GetErrorText());
    return ReportResults(*analysis);
}

ExitCode RunPack(const Options& options) {
    const QFileInfo input(options.input);
    if (!input.isFile() || !input.isReadable())
        return Fail(QStringLiteral("Cannot read file: %1").arg(options.input));
    support::COutputFile output(options.output);
    if (!output.IsOpen())
        return FailToWrite(options.output, output.GetErrorText());
    CZip zip;
    zip.AddFileAs(options.input, AnalysisEntryName());
    const bool packed = PackShowingProgress(zip, output.GetDevice());
    if (support::IsInterrupted())
        return ExitCode::Failed;
    if (output.GetDevice().error() != QFileDevice::NoError)
        return FailToWrite(options.output, output.GetErrorText());
    if (!packed)
        return Fail(QStringLiteral("Problem packing analysis file"));
    return output.Commit() ? ExitCode::Success : FailToWrite(options.output, output.GetErrorText());
}

ExitCode RunExpand(const Options& options) {
    const CExpandedAnalysis expanded(options.input, MayGoOn);
    if (support::IsInterrupted())
        return ExitCode::Failed;
    if (!expanded.IsExpanded() || !QFile::exists(expanded.GetPath()))
        return Fail(ReasonNotExpanded(options.input, expanded.GetProblem()));
    return CopyToOutput(expanded.GetPath(), options.output);
}

} // namespace Tracelyn
