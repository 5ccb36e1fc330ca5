// What the tests of this folder share: the real program, run in a folder of its own.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

struct Outcome {
    int code; // -1 when the program was killed or did not end
    QByteArray out;
    QByteArray err;

    bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "exit code " << outcome.code << ", output:\n"
            << outcome.out.constData() << "errors:\n"
            << outcome.err.constData();
}

// What a run may find: without a limit, a longest file in bytes, which counts like a full disk, or the same
// but with the program killed at that point.
enum class Disk { Free, Full, Killing };

class Cli : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_Folder.filePath(name); }
    static QString TestData(const char* name) { return QDir(TEST_DATA_DIR).filePath(name); }
    static QString Sample(const char* name) { return QDir(SAMPLES_DIR).filePath(name); }

    // Returns the path.
    QString Write(const QString& name, const QByteArray& content) const;
    static QByteArray Read(const QString& path);
    // The names of everything in the folder, "a.xml out.png".
    std::string Files() const {
        return QDir(m_Folder.path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot)
            .join(" ")
            .toStdString();
    }

    // Runs without a display, without a runtime folder and in the "C" locale. A run that ends leaves no
    // temporary file.
    Outcome Run(const QStringList& arguments, Disk disk = Disk::Free,
                const QString& standardOutput = {}) const;

private:
    QTemporaryDir m_Folder;
    QTemporaryDir m_Temporary;
};
