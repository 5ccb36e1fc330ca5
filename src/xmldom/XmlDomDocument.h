// An XML document as a tree. Parsing never reaches for the network or another file; a document that declares
// entities is refused, and attribute defaults that it declares are not applied.
#pragma once

#include "support/Progress.h"
#include "xmldom/XmlForward.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

class QIODevice;

namespace Tracelyn {

class CXmlDomElement;
struct XmlParseResult;

// Notes where the start tag of the root's first child of a name ends.
struct XmlTagWatch {
    const char* element = nullptr; // without a prefix
    // The number of bytes before the ">" of the tag. Unset when the root has no such child, and when the
    // encoding is none whose ASCII characters are single bytes.
    std::optional<int64_t> tagEnd;
};

class CXmlDomDocument {
public:
    CXmlDomDocument() = default;
    CXmlDomDocument(const CXmlDomDocument&) = delete;
    CXmlDomDocument& operator=(const CXmlDomDocument&) = delete;
    virtual ~CXmlDomDocument() = default;

    // Makes the (empty) document when there is none yet. Load and LoadXml call it.
    bool Create(QString& error);

    // Both replace the document. On failure they return false, fill error with "<file> (<line>): <reason>
    // (Error)\n" (or "File does not exist") and leave the document empty. Wrappers of the old document stay
    // valid.
    bool Load(const QString& fileName, QString& error, const support::Progress& progress = {});
    bool LoadXml(const QString& text, QString& error);
    // The same for text in the encoding that it declares (UTF-8 when it declares none).
    bool LoadXmlBytes(std::string_view bytes, QString& error);

    // The same for an open device, of which an error names `source` as the file. The watch is borrowed; null
    // watches nothing.
    bool LoadDevice(QIODevice& device, const QString& source, QString& error, XmlTagWatch* watch = nullptr);

    // The document's element; false when it is empty. Needs Create.
    bool GetRootElement(CXmlDomElement& element) const;

    // Writes the document in its encoding (UTF-8 when it has none); an existing file is replaced only when
    // all is written. False when that fails. The path must not be empty.
    bool Save(const QString& path) const;

private:
    // Takes over the parsed document, or an empty one and the error text.
    bool Take(XmlParseResult result, const QString& source, QString& error);

    std::shared_ptr<xmlDoc> m_pXMLDoc;
    bool m_bCreated = false;
};

} // namespace Tracelyn
