#include "cli/SeveralFiles.h"

#include "cli/Commands.h"
#include "model/GraphData.h"
#include "support/Interrupt.h"
#include "support/Parallel.h"
#include "support/UserDevices.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Tracelyn {

namespace {

#ifdef Q_OS_WIN
constexpr bool kShellReplacesPatterns = false;
#else
constexpr bool kShellReplacesPatterns = true;
#endif

} // namespace

QStringList FilesNamedBy(const QStringList& arguments) {
    if (kShellReplacesPatterns)
        return arguments;
    QStringList files;
    for (const QString& argument : arguments) {
        const QFileInfo pattern(argument);
        const QString name = pattern.fileName();
        const bool isPattern = name.contains(u'*') || name.contains(u'?');
        const QStringList found =
            isPattern ? pattern.dir().entryList({name}, QDir::Files, QDir::Name) : QStringList();
        if (found.isEmpty())
            files.append(argument);
        for (const QString& file : found)
            files.append(pattern.dir().filePath(file));
    }
    return files;
}

void FileReport::AddProblem(const QString& file, const QString& text) {
    problems.append(QStringLiteral("%1: %2").arg(file, text));
}

void FileReport::Add(const QString& file, const ComparisonReport& found) {
    lines.insert(lines.end(), found.lines.begin(), found.lines.end());
    for (const QString& text : found.problems)
        AddProblem(file, text);
    for (const QString& text : found.remarks)
        remarks.append(QStringLiteral("%1: %2").arg(file, text));
}

CJointProgress::CJointProgress(qsizetype files)
    : m_Done(static_cast<size_t>(files), 0.0), m_bShown(support::IsTerminal(stderr)), m_Line(stderr) {}

support::Progress CJointProgress::Of(qsizetype file) {
    return [this, &done = m_Done[static_cast<size_t>(file)]](double part) {
        const std::lock_guard lock(m_Mutex);
        m_fSum += part - done;
        done = part;
        if (m_bShown)
            m_Line.Show(m_fSum / static_cast<double>(m_Done.size()));
        return !support::IsInterrupted();
    };
}

void ReadRecording(CRecording& recording, CGraphData& data, const QString& path, int accessLevel,
                   const support::Progress& progress, FileReport& report) {
    report.isRead = recording.LoadInto(data, path, accessLevel, progress);
    if (recording.IsDocumentRead()) {
        for (const ReadResult& problem : recording.GetProblems())
            report.AddProblem(path, problem.GetText());
    } else {
        report.problems.append(recording.GetReason());
    }
}

std::optional<int> ZeroOf(const CGraphData& data, const Options& options, const QString& file,
                          FileReport& report) {
    QString reason;
    const std::optional<int> zero = FindZero(data, options.alignSignal, reason);
    if (!zero)
        report.AddProblem(file, reason);
    return zero;
}

std::vector<FileReport> LookAtFiles(const QStringList& files, int accessLevel, const LookAtRecording& look,
                                    CJointProgress& progress, qsizetype firstFile) {
    std::vector<FileReport> reports(static_cast<size_t>(files.size()));
    support::ForEachParallel(files.size(), [&](int /*worker*/, int64_t item) {
        FileReport& report = reports[static_cast<size_t>(item)];
        CRecording recording;
        ReadRecording(recording, recording.GetData(), files[item], accessLevel, progress.Of(firstFile + item),
                      report);
        if (report.isRead && !support::IsInterrupted())
            look(recording.GetData(), files[item], report);
        return !support::IsInterrupted();
    });
    return reports;
}

bool PrintReports(std::span<const FileReport> reports, std::span<const char* const> columns,
                  TableFormat format) {
    std::vector<TableLine> lines;
    for (const FileReport& report : reports)
        lines.insert(lines.end(), report.lines.begin(), report.lines.end());
    if (!lines.empty() && !PrintOutput(TableText(columns, lines, format)))
        return false;
    PrintProblems(reports);
    return true;
}

void PrintProblems(std::span<const FileReport> reports) {
    for (const FileReport& report : reports) {
        for (const QString& problem : report.problems)
            PrintError(problem);
        for (const QString& remark : report.remarks)
            std::fprintf(stderr, "tracelyn-cli: %s\n", remark.toUtf8().constData());
    }
}

bool HasProblems(std::span<const FileReport> reports) {
    return std::ranges::any_of(reports, [](const FileReport& report) { return !report.problems.isEmpty(); });
}

} // namespace Tracelyn
