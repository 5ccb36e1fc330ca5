#include "xmldom/XmlDomDocument.h"

#include "support/Assertion.h"
#include "xmldom/LibXml.h"
#include "xmldom/XmlDomElement.h"
#include "xmldom/XmlParse.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <utility>

namespace Tracelyn {

using support::Assert;

namespace {

std::shared_ptr<xmlDoc> EmptyDocument() {
    PrepareXmlLibrary();
    return {xmlNewDoc(nullptr), xmlFreeDoc};
}

QString ErrorText(const QString& source, long line, const QString& reason) {
    return QStringLiteral("%1 (%2): %3 (Error)\n").arg(source, QString::number(line), reason);
}

XmlParseResult ParseFile(const QString& fileName, const support::Progress& progress) {
    QFile file(fileName);
    // To open a pipe would wait for somebody who writes into it.
    if (const QFileInfo info(fileName); !info.isFile() && !info.isDir())
        return {.document = nullptr, .line = 0, .reason = QStringLiteral("This is no file")};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {.document = nullptr, .line = 0, .reason = file.errorString()};
    return ParseXml(file, {.progress = progress});
}

XmlParseResult ParseBytes(const QByteArray& bytes, const char* encoding) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return ParseXml(buffer, {.encoding = encoding});
}

// Whether ASCII characters are single bytes of their own, whatever stands around them.
bool KeepsAscii(const xmlChar* encoding) {
    if (encoding == nullptr)
        return true;
    const QByteArray name = QByteArray(reinterpret_cast<const char*>(encoding)).toUpper();
    return name == "UTF-8" || name == "US-ASCII" || name == "ASCII" || name == "CP1252" ||
           name.startsWith("ISO-8859-") || name.startsWith("WINDOWS-125");
}

int WriteDevice(void* device, const char* buffer, int length) {
    return static_cast<int>(static_cast<QIODevice*>(device)->write(buffer, length));
}

} // namespace

bool CXmlDomDocument::Create(QString& error) {
    if (m_bCreated)
        return true;
    m_pXMLDoc = EmptyDocument();
    m_bCreated = m_pXMLDoc != nullptr;
    if (!m_bCreated)
        error = QStringLiteral("Error calling CoCreateInstance");
    return m_bCreated;
}

bool CXmlDomDocument::Load(const QString& fileName, QString& error, const support::Progress& progress) {
    if (!QFileInfo::exists(fileName)) {
        error = QStringLiteral("File does not exist");
        return false;
    }
    return Create(error) && Take(ParseFile(fileName, progress), fileName, error);
}

bool CXmlDomDocument::LoadXml(const QString& text, QString& error) {
    // The library takes no byte order mark where it is told the encoding.
    const QStringView content =
        text.startsWith(QChar(0xFEFF)) ? QStringView(text).sliced(1) : QStringView(text);
    return Create(error) &&
           Take(ParseBytes(content.toUtf8(), "UTF-8"), QStringLiteral("[string input]"), error);
}

bool CXmlDomDocument::LoadXmlBytes(std::string_view bytes, QString& error) {
    const QByteArray view = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return Create(error) && Take(ParseBytes(view, nullptr), QStringLiteral("[string input]"), error);
}

bool CXmlDomDocument::LoadDevice(QIODevice& device, const QString& source, QString& error, XmlTagWatch* watch,
                                 const support::Progress& progress) {
    if (!Create(error) || !Take(ParseXml(device, {.watch = watch, .progress = progress}), source, error))
        return false;
    if (watch != nullptr && !KeepsAscii(m_pXMLDoc->encoding))
        watch->tagEnd.reset();
    return true;
}

bool CXmlDomDocument::Take(XmlParseResult result, const QString& source, QString& error) {
    const bool loaded = result.document != nullptr;
    m_pXMLDoc = loaded ? std::move(result.document) : EmptyDocument();
    m_bCreated = m_pXMLDoc != nullptr;
    if (!loaded)
        error = ErrorText(source, result.line, result.reason);
    return loaded;
}

bool CXmlDomDocument::GetRootElement(CXmlDomElement& element) const {
    Assert(m_bCreated, "m_bCreated");
    xmlNode* const root = xmlDocGetRootElement(m_pXMLDoc.get());
    if (root == nullptr)
        return false;
    element.Attach(m_pXMLDoc, root);
    return true;
}

bool CXmlDomDocument::Save(const QString& path) const {
    Assert(m_bCreated, "m_bCreated");
    Assert(!path.isEmpty(), "!path.isEmpty()");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const char* const encoding =
        m_pXMLDoc->encoding == nullptr ? "UTF-8" : reinterpret_cast<const char*>(m_pXMLDoc->encoding);
    xmlSaveCtxt* const context =
        xmlSaveToIO(WriteDevice, nullptr, static_cast<QIODevice*>(&file), encoding, 0);
    if (context == nullptr)
        return false;
    const bool written = xmlSaveDoc(context, m_pXMLDoc.get()) >= 0;
    const bool closed = xmlSaveClose(context) >= 0;
    return written && closed && file.commit();
}

} // namespace Tracelyn
