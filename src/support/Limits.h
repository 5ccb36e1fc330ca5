// How far a file may go. Every limit is far above what recordings need; what lies beyond one is refused with
// a message or left out with a result, before it costs time or memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support::limits {

// Markup. A document beyond one of these is refused. Most exist because the parser compares each of them with
// all the others.
inline constexpr int kMaxElementDepth = 256; // elements inside each other; a recording has 4
inline constexpr int kMaxAttributes = 1024;  // of one element
inline constexpr int kMaxAttributeDefaults = 16;
inline constexpr int kMaxNamespaces = 16; // declared by an element and those around it
inline constexpr int kMaxPrefixBytes = 32;
inline constexpr int64_t kMaxDtdBytes = 64 << 10;    // of the document type declaration
inline constexpr int64_t kMaxMarkupBytes = 16 << 20; // of one comment, instruction or attribute
// Elements, attributes, comments and whatever else takes some 200 bytes in the document's tree; a recording
// has hundreds.
inline constexpr int64_t kMaxNodes = 1'000'000;
inline constexpr int64_t kMaxNodeNameBytes = 64 << 20; // of the names of all nodes together
// The parser copies the addresses of declared namespaces into every element:
//   bytes copied <= kFreeNamespaceBytes + kNamespaceBytesPerByteRead * bytes read
inline constexpr int64_t kFreeNamespaceBytes = 1 << 20;
inline constexpr int64_t kNamespaceBytesPerByteRead = 4;

// The rows of a longer file are parsed with the rest of the document: looking for them beforehand would keep
// a few bytes for each piece of the file.
inline constexpr int64_t kMaxFileBytesWithRowsApart = int64_t{1} << 38;

// The model. Further ones are left out. A hundred thousand signals would take seconds for every frame.
inline constexpr size_t kMaxVariables = 10'000;
inline constexpr size_t kMaxGroups = 10'000;
inline constexpr size_t kMaxSignals = 10'000;
// Characters of a name, unit or colour; the rest is cut off. Every frame measures and draws some of them.
inline constexpr int kMaxNameLength = 5'000;
// Problems that a reader keeps; it counts the others.
inline constexpr size_t kMaxProblems = 1000;

// Rows. Those beyond this are left out. A row that is shorter than the list of variables asks for more memory
// than its text, which in full rows has two bytes or more for each sample:
//   samples <= kFreeSamples + bytes of the rows' text / kRowBytesPerSample
inline constexpr int64_t kFreeSamples = 1 << 22;
inline constexpr int64_t kRowBytesPerSample = 2;
inline constexpr size_t kMaxFieldBytes = 4096; // of a field; the rest of it is not looked at

// The table of an export has a value for each line and row, however many lines show one variable. One beyond
// this is not written:
//   values <= max(kFreeTableValues, kLinesPerVariable * samples)
inline constexpr int64_t kFreeTableValues = 1 << 25;
inline constexpr int64_t kLinesPerVariable = 64;

// What is shown. Further decimals and characters are not.
inline constexpr int kMaxDecimals = 40;               // reaches the digits of the smallest normal number
inline constexpr int kMaxShownLength = 400;           // characters of one text
inline constexpr int64_t kMaxMeasuredLength = 50'000; // characters from which the console takes its width
inline constexpr float kMaxPixel = 268435456.0F;      // coordinate; 64-bit arithmetic can still handle it
inline constexpr int kMaxPictureSidePixels = 16384;

} // namespace support::limits
