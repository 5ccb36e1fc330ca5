// What the tests of this folder share: a document from a text, and a file in a folder of its own.
#pragma once

#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Tracelyn {

// The error of reading the bytes; empty, and the root element set, when there is none.
inline QString ErrorOf(const QByteArray& bytes, CXmlDomElement* root = nullptr) {
    CXmlDomDocument document;
    CXmlDomElement element;
    QString error;
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const bool loaded = document.LoadXmlBytes(view, error);
    EXPECT_EQ(loaded, error.isEmpty());
    EXPECT_EQ(document.GetRootElement(root != nullptr ? *root : element), loaded);
    return error;
}

// The root element of the text, which must parse.
inline CXmlDomElement RootOf(const QByteArray& text) {
    CXmlDomElement root;
    EXPECT_EQ(ErrorOf(text, &root), "") << text.left(200).constData();
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

} // namespace Tracelyn
