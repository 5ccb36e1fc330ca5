// What the tests of this folder share: the real program, run in a folder of its own.
#pragma once

#include "Testing.h"

struct Outcome {
    int code; // -1 when the program was killed or did not end
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
    friend void PrintTo(const Outcome& outcome, std::ostream* stream) {
        *stream << "exit code " << outcome.code << ", output:\n" << outcome.out << "errors:\n" << outcome.err;
    }
};

class Cli : public ::testing::Test, protected TestFolder {
protected:
    static QString TestData(const char* name) { return QDir(TEST_DATA_DIR).filePath(name); }
    static QString Sample(const char* name) { return QDir(SAMPLES_DIR).filePath(name); }

    // The names of the files in the folder.
    QStringList Files() const { return QDir(Folder()).entryList(QDir::Files); }

    // Runs without a display, without a runtime folder and in the "C" locale. A run that ends leaves
    // nothing in the temporary folder. A limit in bytes to every file it writes counts like a full disk.
    Outcome Run(const QStringList& arguments, unsigned limit = 0) const;

private:
    QTemporaryDir m_Temporary;
};
