// Writes a CSV file into FOLDER for each file of a measurement set: FILE and those beside it whose names
// differ in a number at their end alone. What is wrong with one of them is said, and the others are done.
//     csv_of_a_set FILE FOLDER
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"

#include <tracelyn/Recording.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

using namespace Tracelyn;

// What is wrong; empty when all of the recording is written.
static QString WriteCsv(const QString& source, const QString& target) {
    CRecording recording;
    if (!recording.Load(source))
        return recording.GetReason();
    try {
        CCsvFile file; // the table appears at its place when it is complete
        if (!file.Open(target))
            throw CFileException("it cannot be opened");
        if (ExportCsv(recording.GetData(), file) != ExportEnd::Complete)
            throw CFileException("the table would be too large");
        file.Close();
    } catch (const CFileException& exception) {
        return QStringLiteral("Cannot write %1: %2").arg(target, QString::fromUtf8(exception.what()));
    }
    const auto& problems = recording.GetProblems();
    return problems.empty() ? QString() : source + ": " + problems.front().GetText().trimmed();
}

// The name without its number.
static QString SetOf(const QFileInfo& file) {
    return file.completeBaseName().remove(QRegularExpression("[0-9]+$")) + '.' + file.suffix();
}

int main(int argc, char* argv[]) {
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QFileInfo first(argc == 3 ? QString::fromLocal8Bit(argv[1]) : QString());
    const QDir folder(argc == 3 ? QString::fromLocal8Bit(argv[2]) : QString());
    if (!first.isFile() || !folder.exists()) {
        err << "usage: csv_of_a_set FILE FOLDER\n";
        return 2;
    }
    bool isSound = true;
    for (const QFileInfo& file : first.dir().entryInfoList(QDir::Files, QDir::Name)) {
        if (SetOf(file) != SetOf(first))
            continue;
        const QString target = folder.filePath(file.completeBaseName() + ".csv");
        const QString problem = WriteCsv(file.filePath(), target);
        isSound = isSound && problem.isEmpty();
        (problem.isEmpty() ? out << target : err << problem) << '\n';
    }
    return isSound ? 0 : 1;
}
