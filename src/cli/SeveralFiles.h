// Reads the recordings of a command that takes any number of them.
#pragma once

#include "cli/Options.h"
#include "cli/ProgressLine.h"
#include "measure/Table.h"
#include "support/Progress.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace Tracelyn {

class CGraphData;
class CRecording;

// The files that the arguments name. A shell of Windows leaves patterns such as bend*.paf to the program; a
// pattern without a match stays as it is.
QStringList FilesNamedBy(const QStringList& arguments);

// What became of one file. The output and the problems are printed when all files are done, in their order.
struct FileReport {
    bool isRead = false; // whether there was anything to look at
    std::vector<TableLine> lines;
    QStringList problems; // each names the file
    QStringList remarks;  // the same, but no problem

    // Adds "FILE: TEXT" to the problems.
    void AddProblem(const QString& file, const QString& text);
    void Add(const QString& file, const ComparisonReport& found);
};

// One progress line on a terminal for files that are read at the same time.
class CJointProgress {
public:
    explicit CJointProgress(qsizetype files);

    // Of the file with that number. May be called on any thread; asks to stop after Ctrl+C. Borrows this
    // object.
    support::Progress Of(qsizetype file);

private:
    std::mutex m_Mutex;
    std::vector<double> m_Done;
    double m_fSum = 0;
    bool m_bShown;
    CProgressLine m_Line;
};

// Reads the file into a model, the recording's own or another, which goes before the recording, and adds what
// is wrong with the file to the report.
void ReadRecording(CRecording& recording, CGraphData& data, const QString& path, int accessLevel,
                   const support::Progress& progress, FileReport& report);

// Where the recording's zero is: its first sample, or where the named signal first switches on. Nothing, with
// a problem, when it does not.
std::optional<int> ZeroOf(const CGraphData& data, const Options& options, const QString& file,
                          FileReport& report);

// Calls look(data, file, report) for each file of which anything could be read, several at the same time on
// threads of their own, and gives what it is told in the order of the files. A recording goes when it was
// looked at. After Ctrl+C files are left out. The progress begins with the number of the first file.
using LookAtRecording = std::function<void(const CGraphData& data, const QString& file, FileReport& report)>;
std::vector<FileReport> LookAtFiles(const QStringList& files, int accessLevel, const LookAtRecording& look,
                                    CJointProgress& progress, qsizetype firstFile = 0);

// Prints the lines of all reports as one table, if there are any, and then the problems and remarks.
// False, with the reason printed, when the table cannot be written.
bool PrintReports(std::span<const FileReport> reports, std::span<const char* const> columns,
                  TableFormat format);

// Only the problems and remarks.
void PrintProblems(std::span<const FileReport> reports);

bool HasProblems(std::span<const FileReport> reports);

} // namespace Tracelyn
