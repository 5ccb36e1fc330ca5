// What the tests of this folder share: a document from a text, and a file in a folder of its own.
#pragma once

#include "XmlDomDocument.h"
#include "XmlDomElement.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// The root element of the text, which must parse.
inline CXmlDomElement RootOf(const QString& text) {
    CXmlDomDocument document;
    CXmlDomElement root;
    QString error;
    EXPECT_TRUE(document.LoadXml(text, error)) << error.toStdString();
    EXPECT_TRUE(document.GetRootElement(root));
    return root;
}

class XmlFile {
public:
    explicit XmlFile(const QByteArray& content, const QString& name = QStringLiteral("file.xml"))
        : m_path(m_folder.filePath(name)) {
        QFile file(m_path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
    }
    const QString& Path() const { return m_path; }

private:
    QTemporaryDir m_folder;
    QString m_path;
};
