// What this folder shares of libxml2: its preparation, and how to look at its nodes.
#pragma once

#include <QString>

#include <libxml/tree.h>

#include <string_view>

namespace Tracelyn {

// Prepares the library once for the process and teaches it the one encoding that it lacks in some builds,
// windows-1252. Called before anything else of it.
void PrepareXmlLibrary();

inline std::string_view ViewOf(const xmlChar* text) {
    return text == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(text));
}

// The node or its next sibling, past text that is white space alone.
inline xmlNode* SkipBlankText(xmlNode* node) {
    while (node != nullptr && node->type == XML_TEXT_NODE && xmlIsBlankNode(node) != 0)
        node = node->next;
    return node;
}

inline xmlNode* FirstChild(const xmlNode* node) {
    return SkipBlankText(node->children);
}

// A name as written in the document, with its prefix.
inline QString QualifiedName(const xmlNs* space, const xmlChar* localName) {
    const QString name = QString::fromUtf8(ViewOf(localName));
    return space == nullptr || space->prefix == nullptr
               ? name
               : QString::fromUtf8(ViewOf(space->prefix)) + QLatin1Char(':') + name;
}

inline bool HasName(const xmlNs* space, const xmlChar* localName, std::string_view name) {
    if (space == nullptr || space->prefix == nullptr)
        return ViewOf(localName) == name;
    const std::string_view prefix = ViewOf(space->prefix);
    return name.size() > prefix.size() && name.starts_with(prefix) && name[prefix.size()] == ':' &&
           name.substr(prefix.size() + 1) == ViewOf(localName);
}

} // namespace Tracelyn
