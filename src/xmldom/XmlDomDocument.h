// An XML document as a tree. Parsing never reaches for the network or another file; a document that declares
// entities is refused, and attribute defaults that it declares are not applied.
#pragma once

#include "support/Progress.h"
#include "xmldom/XmlForward.h"
#include "xmldom/XmlPlainText.h"

#include <QString>

#include <memory>
#include <optional>
#include <string_view>

namespace Tracelyn {

class CXmlDomElement;
struct XmlParseResult;

// Text that was left in its file.
struct XmlTextApart {
    std::shared_ptr<support::CSharedFile> file;
    XmlTextRange range;
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

    // As Load. When the text at the start of the root's first child of that name is plain (see FindPlainText)
    // it is left in the file: that element is empty then, and GetTextApart says where its text lies. Sound
    // documents only: all others are loaded, or refused, as ever.
    bool LoadWithTextApart(const QString& fileName, const char* childName, QString& error,
                           const support::Progress& progress = {});
    const std::optional<XmlTextApart>& GetTextApart() const { return m_TextApart; }

    // The document's element; false when it is empty. Needs Create.
    bool GetRootElement(CXmlDomElement& element) const;

    // Writes the document in its encoding (UTF-8 when it has none); an existing file is replaced only when
    // all is written. False when that fails. The path must not be empty.
    bool Save(const QString& path) const;

private:
    // Nothing when only the whole file can tell.
    static std::optional<XmlParseResult> ParseWithTextApart(const QString& fileName, const char* childName,
                                                            const support::Progress& progress,
                                                            std::optional<XmlTextApart>& apart);
    // Takes over the parsed document, or an empty one and the error text.
    bool Take(XmlParseResult result, const QString& source, QString& error);

    std::shared_ptr<xmlDoc> m_pXMLDoc;
    std::optional<XmlTextApart> m_TextApart;
    bool m_bCreated = false;
};

} // namespace Tracelyn
