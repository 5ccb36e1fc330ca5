// Reads a device to its end into a libxml2 tree, with everything refused that reaches outside the document or
// makes it larger than what was read.
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
    std::shared_ptr<xmlDoc> document; // null on failure, which the rest then explains
    long line = 0;
    QString reason;
    bool readFailed = false; // and not the document
};

struct XmlParseOptions {
    // Overrides what the document declares; null lets it decide.
    const char* encoding = nullptr;
    // Borrowed; null when nothing is watched.
    XmlTagWatch* watch = nullptr;
    // What it throws ends the parse and is thrown on.
    support::Progress progress = {};
};

// The device is read in small pieces.
XmlParseResult ParseXml(QIODevice& device, const XmlParseOptions& options = {});

} // namespace Tracelyn
