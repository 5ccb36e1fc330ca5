#include "xmldom/XmlParse.h"

#include "support/Limits.h"
#include "xmldom/LibXml.h"

#include <QIODevice>
#include <QStringDecoder>

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <span>
#include <string_view>
#include <utility>

namespace Tracelyn {

namespace limits = support::limits;

namespace {

constexpr const char* kTooManyAttributes = "Too many attributes";
constexpr const char* kTooManyNamespaces = "Too many namespaces";

// What one parse knows about itself; libxml2's callbacks reach it through the context. They allocate nothing,
// for an exception must not cross the library.
struct ParseState {
    QIODevice& device;
    const XmlParseOptions& options;
    xmlParserCtxtPtr context = nullptr;
    // Bytes read when a document type declaration, or a piece of markup, was first seen that goes on.
    std::optional<int64_t> dtdFrom = std::nullopt;
    std::optional<int64_t> tokenFrom = std::nullopt;
    std::exception_ptr exception = nullptr;
    int64_t bytesRead = 0;
    int64_t namespaceBytes = 0;
    int64_t nameBytes = 0;
    int64_t nodes = 0;
    int defaults = 0;
    bool failed = false;
    bool readFailed = false;
    long line = 0;
    std::array<char, 1024> reason = {};

    // Only the first failure counts; the later ones are its consequences.
    void Fail(long atLine, const char* text) {
        if (failed)
            return;
        failed = true;
        line = atLine;
        std::snprintf(reason.data(), reason.size(), "%s", text);
    }
};

ParseState& StateOf(void* context) {
    return *static_cast<ParseState*>(static_cast<xmlParserCtxtPtr>(context)->_private);
}

void Refuse(void* context, const char* reason) {
    StateOf(context).Fail(xmlSAX2GetLineNumber(context), reason);
    xmlStopParser(static_cast<xmlParserCtxtPtr>(context));
}

void RefuseEntity(void* context, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    Refuse(context, "Entity declarations are not allowed");
}

void RefuseUnparsedEntity(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                          const xmlChar* /*systemId*/, const xmlChar* /*notation*/) {
    Refuse(context, "Entity declarations are not allowed");
}

// The library keeps these as nodes, even inside of attributes, and what stands behind one in a text is lost.
void RefuseUndeclaredEntity(void* context, const xmlChar* /*name*/) {
    Refuse(context, "Undeclared entities are not allowed");
}

// The tag is read up to its ">", which comes next.
void NoteTag(xmlParserCtxtPtr context, const xmlChar* localName, const xmlChar* prefix) {
    XmlTagWatch* const watch = StateOf(context).options.watch;
    const bool isChildOfRoot = context->nodeNr == 1 && prefix == nullptr;
    if (watch != nullptr && !watch->tagEnd && isChildOfRoot &&
        xmlStrEqual(localName, reinterpret_cast<const xmlChar*>(watch->element)) != 0)
        watch->tagEnd = xmlByteConsumed(context);
}

// False when the tree would become too large.
bool CountNodes(void* context, int count) {
    ParseState& state = StateOf(context);
    state.nodes += count;
    if (state.nodes > limits::kMaxNodes)
        Refuse(context, "The document has too many nodes");
    return state.nodes <= limits::kMaxNodes;
}

void AddComment(void* context, const xmlChar* text) {
    StateOf(context).tokenFrom.reset();
    if (CountNodes(context, 1))
        xmlSAX2Comment(context, text);
}

void AddInstruction(void* context, const xmlChar* target, const xmlChar* data) {
    StateOf(context).tokenFrom.reset();
    if (CountNodes(context, 1))
        xmlSAX2ProcessingInstruction(context, target, data);
}

void AddCData(void* context, const xmlChar* text, int length) {
    if (CountNodes(context, 1))
        xmlSAX2CDataBlock(context, text, length);
}

// Of an element and its attributes, each of which is five pointers, the name first.
int64_t NameBytes(const xmlChar* element, std::span<const xmlChar*> attributes) {
    int64_t bytes = xmlStrlen(element);
    for (std::size_t i = 0; i < attributes.size(); i += 5)
        bytes += xmlStrlen(attributes[i]);
    return bytes;
}

// Declared attribute defaults stay out of the tree, except namespaces: those are copied into every element,
// so a few bytes could grow without end. What they cost may not outgrow what was read.
void StartElement(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
                  int namespaceCount, const xmlChar** namespaces, int attributeCount, int defaultedCount,
                  const xmlChar** attributes) {
    ParseState& state = StateOf(context);
    state.tokenFrom.reset();
    int longestPrefix = 0;
    const std::span pairs(namespaces, 2 * static_cast<std::size_t>(namespaceCount)); // prefix, address
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        longestPrefix = std::max(longestPrefix, xmlStrlen(pairs[i]));
        state.namespaceBytes += xmlStrlen(pairs[i + 1]);
    }

    state.nameBytes += NameBytes(localName, {attributes, 5 * static_cast<std::size_t>(attributeCount)});

    NoteTag(static_cast<xmlParserCtxtPtr>(context), localName, prefix);
    if (attributeCount > limits::kMaxAttributes)
        Refuse(context, kTooManyAttributes);
    else if (state.context->nsNr / 2 > limits::kMaxNamespaces)
        Refuse(context, kTooManyNamespaces);
    else if (longestPrefix > limits::kMaxPrefixBytes)
        Refuse(context, "A namespace prefix is too long");
    else if (state.context->nodeNr >= limits::kMaxElementDepth)
        Refuse(context, "Elements are nested too deeply");
    else if (state.nameBytes > limits::kMaxNodeNameBytes)
        Refuse(context, "The names in the document are too long");
    else if (state.namespaceBytes >
             limits::kFreeNamespaceBytes + limits::kNamespaceBytesPerByteRead * state.bytesRead)
        Refuse(context, "Namespace defaults make the document too large");
    else if (CountNodes(context, 1 + namespaceCount + attributeCount))
        xmlSAX2StartElementNs(context, localName, prefix, uri, namespaceCount, namespaces, attributeCount,
                              defaultedCount, attributes);
}

// Every element's attributes are compared with each other and with all declared defaults: both stay few.
void RefuseManyDefaults(void* context, const xmlChar* element, const xmlChar* name, int type, int defaultKind,
                        const xmlChar* defaultValue, xmlEnumerationPtr values) {
    if (defaultValue != nullptr && ++StateOf(context).defaults > limits::kMaxAttributeDefaults) {
        xmlFreeEnumeration(values);
        Refuse(context, "Too many attribute defaults");
        return;
    }
    xmlSAX2AttributeDecl(context, element, name, type, defaultKind, defaultValue, values);
}

void KeepFirstFatalError(void* context, xmlErrorPtr error) {
    if (context == nullptr)
        return;
    // The library's own words for this are the name of one of its functions.
    if (error->code == XML_ERR_NO_MEMORY)
        StateOf(context).Fail(error->line, "Out of memory");
    else if (error->level == XML_ERR_FATAL)
        StateOf(context).Fail(error->line, error->message == nullptr ? "" : error->message);
}

// Errors of the library's decoders know no context; the library would print them.
class CContextFreeErrors {
public:
    explicit CContextFreeErrors(xmlParserCtxt& context)
        : m_pOldHandler(xmlStructuredError), m_pOldContext(xmlStructuredErrorContext) {
        xmlSetStructuredErrorFunc(&context, Keep);
    }
    CContextFreeErrors(const CContextFreeErrors&) = delete;
    CContextFreeErrors& operator=(const CContextFreeErrors&) = delete;
    ~CContextFreeErrors() { xmlSetStructuredErrorFunc(m_pOldContext, m_pOldHandler); }

private:
    static void Keep(void* context, xmlErrorPtr error) {
        if (error->level >= XML_ERR_ERROR)
            StateOf(context).Fail(xmlSAX2GetLineNumber(context),
                                  error->message == nullptr ? "" : error->message);
    }

    xmlStructuredErrorFunc m_pOldHandler;
    void* m_pOldContext;
};

// Whether more than `most` bytes were read since this began to last.
bool LastsTooLong(bool isThere, std::optional<int64_t>& from, int64_t bytesRead, int64_t most) {
    if (!isThere)
        from.reset();
    else if (!from)
        from = bytesRead;
    return from && bytesRead - *from > most;
}

// What the parser gathers before it tells anybody: the attributes and namespaces of a start tag, and the
// lists of a document type declaration, among all of which it looks for equal ones; one long attribute,
// comment or instruction.
const char* FindExcess(ParseState& state) {
    constexpr int kSlotsPerAttribute = 5;
    constexpr int kGrowth = 2; // of the parser's tables
    const xmlParserCtxt& context = *state.context;
    if (context.maxatts > kGrowth * kSlotsPerAttribute * limits::kMaxAttributes)
        return kTooManyAttributes;
    if (context.nsNr / 2 > kGrowth * limits::kMaxNamespaces)
        return kTooManyNamespaces;
    if (LastsTooLong(context.inSubset != 0, state.dtdFrom, state.bytesRead, limits::kMaxDtdBytes))
        return "The document type declaration is too long";
    const bool isToken = context.instate == XML_PARSER_ATTRIBUTE_VALUE ||
                         context.instate == XML_PARSER_COMMENT || context.instate == XML_PARSER_PI;
    if (LastsTooLong(isToken, state.tokenFrom, state.bytesRead, limits::kMaxMarkupBytes))
        return "A piece of markup is too long";
    return nullptr;
}

bool MayGoOn(ParseState& state) {
    const auto size = static_cast<double>(std::max<qint64>(state.device.size(), 1));
    try {
        return support::Report(state.options.progress,
                               std::min(1.0, static_cast<double>(state.bytesRead) / size));
    } catch (...) {
        state.exception = std::current_exception();
        return false;
    }
}

int ReadDevice(void* opaque, char* buffer, int length) {
    ParseState& state = *static_cast<ParseState*>(opaque);
    // The parser would go on, and for every further error in a comment it copies the whole comment.
    if (state.failed)
        return -1;
    if (const char* const excess = FindExcess(state)) {
        state.Fail(xmlSAX2GetLineNumber(state.context), excess);
        return -1;
    }
    const qint64 count = state.device.read(buffer, length);
    if (count < 0) {
        state.readFailed = true;
        return -1;
    }
    if (!MayGoOn(state)) {
        state.Fail(xmlSAX2GetLineNumber(state.context), "The load was stopped");
        return -1;
    }
    if (state.bytesRead == 0 &&
        std::string_view(buffer, static_cast<size_t>(count)).starts_with("\xEF\xBB\xBF"))
        state.context->options |= XML_PARSE_IGNORE_ENC; // the mark says more than the declaration
    state.bytesRead += count;
    return static_cast<int>(count);
}

void InstallCallbacks(xmlParserCtxt& context, ParseState& state) {
    context._private = &state;
    context.sax->entityDecl = RefuseEntity;
    context.sax->unparsedEntityDecl = RefuseUnparsedEntity;
    context.sax->reference = RefuseUndeclaredEntity;
    context.sax->attributeDecl = RefuseManyDefaults;
    context.sax->startElementNs = StartElement;
    context.sax->comment = AddComment;
    context.sax->processingInstruction = AddInstruction;
    context.sax->cdataBlock = AddCData;
    context.sax->serror = KeepFirstFatalError;
}

QString WithoutLineEnd(const char* reason) {
    // Leaves out a character of which the buffer had no room for the rest.
    QString text = QStringDecoder(QStringDecoder::Utf8)(QByteArrayView(reason));
    while (text.endsWith(u'\n') || text.endsWith(u'\r'))
        text.chop(1);
    return text;
}

} // namespace

XmlParseResult ParseXml(QIODevice& device, const XmlParseOptions& options) {
    PrepareXmlLibrary();
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                               xmlFreeParserCtxt);
    if (context == nullptr)
        return {.document = nullptr, .line = 0, .reason = QStringLiteral("Out of memory")};

    ParseState state{.device = device, .options = options};
    state.context = context.get();
    InstallCallbacks(*context, state);
    const CContextFreeErrors contextFreeErrors(*context);
    constexpr int kFlags = XML_PARSE_HUGE | XML_PARSE_NONET;
    std::shared_ptr<xmlDoc> document(
        xmlCtxtReadIO(context.get(), ReadDevice, nullptr, &state, nullptr, options.encoding, kFlags),
        xmlFreeDoc);
    if (state.exception)
        std::rethrow_exception(state.exception);

    if (state.readFailed)
        return {.document = nullptr, .line = state.line, .reason = device.errorString()};
    if (state.failed)
        return {.document = nullptr, .line = state.line, .reason = WithoutLineEnd(state.reason.data())};
    if (document == nullptr)
        return {.document = nullptr, .line = 0, .reason = QStringLiteral("The document cannot be read")};
    return {.document = std::move(document), .line = 0, .reason = {}};
}

} // namespace Tracelyn
