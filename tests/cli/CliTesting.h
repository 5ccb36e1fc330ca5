// What the tests of this folder share: the real program, run in a folder of its own.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

struct Outcome {
    int code; // -1 when the program was killed or did not end
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
    friend void PrintTo(const Outcome& outcome, std::ostream* stream) {
        *stream << "exit code " << outcome.code << ", output:\n" << outcome.out << "errors:\n" << outcome.err;
    }
};

class Cli : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_Folder.filePath(name); }
    static QString TestData(const char* name) { return QDir(TEST_DATA_DIR).filePath(name); }
    static QString Sample(const char* name) { return QDir(SAMPLES_DIR).filePath(name); }

    // Returns the path.
    QString Write(const QString& name, const QByteArray& content) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }
    // The names of the files in the folder.
    QStringList Files() const { return QDir(m_Folder.path()).entryList(QDir::Files); }

    // Runs without a display, without a runtime folder and in the "C" locale. A run that ends leaves no
    // temporary file. A limit in bytes to every file it writes counts like a full disk.
    Outcome Run(const QStringList& arguments, unsigned limit = 0) const;

private:
    QTemporaryDir m_Folder;
    QTemporaryDir m_Temporary;
};
