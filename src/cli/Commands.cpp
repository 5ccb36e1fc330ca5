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

// Shows how far the operation is, on a terminal, and asks to stop after Ctrl+C. Borrows the line.
support::Progress ProgressOn(CProgressLine& line) {
    return [&line, isShown = support::IsTerminal(stderr)](double done) {
        if (isShown)
            line.Show(done);
        return MayGoOn(done);
    };
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

bool LoadInput(const Options& options, CRecording& recording, CGraphData& data) {
    {
        CProgressLine line(stderr);
        recording.LoadInto(data, options.input, options.accessLevel, ProgressOn(line));
    }
    if (support::IsInterrupted())
        return false;
    if (!recording.IsDocumentRead())
        PrintError(recording.GetReason());
    return recording.IsDocumentRead();
}

bool PrintOutput(const QByteArray& bytes) {
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return true;
    FailToWrite(QStringLiteral("standard output"), qt_error_string());
    return false;
}

ExitCode ReportProblems(const CRecording& recording) {
    for (const ReadResult& problem : recording.GetProblems())
        PrintError(problem.GetText());
    return recording.GetProblems().empty() ? ExitCode::Success : ExitCode::ReadWithProblems;
}

ExitCode WrongUsage(const QString& error) {
    std::fprintf(stderr, "tracelyn-cli: %s\n%s", error.toUtf8().constData(),
                 UsageText().toUtf8().constData());
    return ExitCode::WrongUsage;
}

ExitCode RunCsv(const Options& options) {
    CRecording recording;
    if (!LoadInput(options, recording, recording.GetData()))
        return ExitCode::Failed;
    if (!recording.IsRead()) {
        ReportProblems(recording);
        return ExitCode::Failed;
    }
    support::COutputFile output(options.output);
    if (!output.IsOpen())
        return FailToWrite(options.output, output.GetErrorText());
    try {
        CCsvFile file;
        file.Open(output.GetDevice());
        switch (ExportCsv(recording.GetData(), file, MayGoOn)) {
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
    return ReportProblems(recording);
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
