// A folder of a test's own, with files in it.
#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A base of fixtures.
class TestFolder {
protected:
    QString Folder() const { return m_Folder.path(); }
    QString Path(const QString& name) const { return m_Folder.filePath(name); }
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

private:
    QTemporaryDir m_Folder;
};
