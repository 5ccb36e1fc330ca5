// What every test may use: GoogleTest, the usual parts of the library, and files in a folder of its own.
#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <climits>
#include <cmath>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace Tracelyn {}
using namespace Tracelyn;

// A base of fixtures, or an object of its own.
class TestFolder {
public:
    QString Folder() const { return m_Folder.path(); }
    QString Path(const QString& name) const { return Folder() + '/' + name; }
    // The names of everything in the folder.
    QStringList Entries() const {
        return QDir(Folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                        QDir::NoDotAndDotDot);
    }
    // Returns the path.
    QString Write(const QString& name, const QByteArray& content = {}) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
            << qPrintable(name);
        return file.fileName();
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

private:
    const QTemporaryDir m_Folder;
};

// Which variables name the temporary folder on the systems.
inline constexpr std::array kTemporaryFolderVariables{"TMPDIR", "TMP", "TEMP"};

// Lets this process and the programs that it starts use the folder for their temporary files. Test programs
// run at the same time: one that looks for what was left behind must not meet the files of another.
inline void UseTemporaryFolder(const QString& folder) {
    for (const char* const variable : kTemporaryFolderVariables)
        qputenv(variable, QDir::toNativeSeparators(folder).toUtf8());
}

// Makes another way to a file: a symbolic link, or on Windows, where only some users may make those, a second
// name.
inline bool LinkTo(const QString& file, const QString& link) {
#ifdef Q_OS_WIN
    std::error_code error;
    std::filesystem::create_hard_link(file.toStdWString(), link.toStdWString(), error);
    return !error;
#else
    return QFile::link(file, link);
#endif
}
