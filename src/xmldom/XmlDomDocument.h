// An XML document as a tree. Nothing but the document itself is read: no other file, no network. A document
// that declares entities, or one beyond support/Limits.h, is refused; declared attribute defaults are
// ignored.
#pragma once

#include "support/Progress.h"
#include "xmldom/XmlDomNode.h"

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

    // Makes an empty document unless there is one. The loads call it.
    bool Create(QString& error);

    // Replaces the document by that of the file. On failure returns false, sets the error to "<file>
    // (<line>): <reason> (Error)\n", or to "File does not exist", and leaves the document empty. Nodes of the
    // old document stay valid.
    bool Load(const QString& fileName, QString& error, const support::Progress& progress = {});
    // The same for a text; an encoding that it declares is ignored. An error names it "[string input]".
    // Ready, but no command calls LoadXml, LoadXmlBytes and Save.
    bool LoadXml(const QString& text, QString& error);
    // The same for bytes in the encoding that they declare, or in UTF-8.
    bool LoadXmlBytes(std::string_view bytes, QString& error);

    // The same for an open device, which an error calls `source`. Fills in the watch, if there is one.
    bool LoadDevice(QIODevice& device, const QString& source, QString& error, XmlTagWatch* watch = nullptr,
                    const support::Progress& progress = {});

    // Sets `element` to the root; false when the document is empty. Only after Create or a load.
    bool GetRootElement(CXmlDomElement& element) const;

    // Writes the document in its own encoding, or in UTF-8. An existing file is replaced only when everything
    // was written; otherwise the result is false. The path must not be empty. Only after Create or a load.
    bool Save(const QString& path) const;

private:
    // Takes over the parsed document, or an empty one and the error text.
    bool Take(XmlParseResult result, const QString& source, QString& error);

    std::shared_ptr<xmlDoc> m_pXMLDoc;
    bool m_bCreated = false;
};

} // namespace Tracelyn
