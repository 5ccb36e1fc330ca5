// Reads a device to its end into a libxml2 tree, with everything refused that reaches outside the document or
// makes it larger than what was read.
#pragma once

#include "XmlForward.h"

#include <QString>

#include <memory>

class QIODevice;

struct XmlParseResult {
    std::shared_ptr<xmlDoc> document; // null on failure, which the rest then explains
    long line = 0;
    QString reason;
};

// The device is read in small pieces. encoding overrides what the document declares; null lets it decide.
XmlParseResult ParseXml(QIODevice& device, const char* encoding);
