// Parses a device into a libxml2 tree. Refuses whatever reaches outside the document, would make the tree
// grow beyond what was read, or is beyond support/Limits.h.
#pragma once

#include "support/Progress.h"
#include "xmldom/XmlDomDocument.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class QIODevice;

namespace Tracelyn {

struct XmlParseResult {
    std::shared_ptr<xmlDoc> document; // null on failure
    // Where and why it failed; line 0 when it was at no line.
    long line = 0;
    QString reason;
};

struct XmlParseOptions {
    // The encoding, whatever the document declares; null for the declared one.
    const char* encoding = nullptr;
    // Borrowed; null when nothing is watched.
    XmlTagWatch* watch = nullptr;
    // Asked to stop, the parse fails. May throw: that ends the parse, and ParseXml throws the same.
    support::Progress progress = {};
};

// Reads the device to its end, in small pieces.
XmlParseResult ParseXml(QIODevice& device, const XmlParseOptions& options = {});

} // namespace Tracelyn
