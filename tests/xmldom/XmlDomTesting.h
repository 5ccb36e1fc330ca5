// What the tests of this folder share: a document from a text, and a file in a folder of its own.
#pragma once

#include "Testing.h"
#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"

namespace Tracelyn {

// The error of reading the bytes; empty, and the root element set, when there is none.
inline QString ErrorOf(const QByteArray& bytes, CXmlDomElement* root = nullptr) {
    CXmlDomDocument document;
    CXmlDomElement element;
    QString error;
    const bool loaded = document.LoadXmlBytes(bytes.toStdString(), error);
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

// A file of its own with the content. Its name has characters that mean something in addresses.
class XmlFile : TestFolder {
public:
    explicit XmlFile(const QByteArray& content)
        : m_path(Write("a%20b#c&d 100%1%2 压弯 \U0001F527 Ä.xml", content)) {}
    const QString& Path() const { return m_path; }

private:
    QString m_path;
};

} // namespace Tracelyn
