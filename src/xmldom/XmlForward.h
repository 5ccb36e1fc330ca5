// The names of libxml2's document and node, so that this folder's headers need none of its headers.
#pragma once

// NOLINTBEGIN(bugprone-reserved-identifier): the library's own names
struct _xmlDoc;
struct _xmlNode;
// NOLINTEND(bugprone-reserved-identifier)
using xmlDoc = _xmlDoc;
using xmlNode = _xmlNode;
