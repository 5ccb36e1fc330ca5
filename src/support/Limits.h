// How far anybody may go with what a file says. Real recordings stay far below all of these; beyond one the
// reader says so, shows what it has read, and no time or memory is spent on the rest.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support::limits {

// Markup. The parser's own effort grows with the square of some of these.
inline constexpr int kDepth = 256;       // elements inside each other; a recording has four
inline constexpr int kAttributes = 1024; // of one element, each compared with the others
inline constexpr int kDefaults = 16;     // declared attribute defaults, made anew for every element
// Namespaces declared around one element, its own and its parents'. For every element and attribute with a
// prefix the parser goes through all of them, and compares byte by byte.
inline constexpr int kNamespaces = 16;
inline constexpr int kPrefix = 32; // bytes
inline constexpr int64_t kDtd =
    64 << 10; // bytes of a document type declaration, whose lists are compared, too
inline constexpr int64_t kToken = 16 << 20; // bytes of a comment, an instruction, an element's attributes

// Declared namespaces are copied into every element: their bytes may come to this and so many for each byte
// read.
inline constexpr int64_t kNamespaceBytes = 1 << 20;
inline constexpr int64_t kNamespaceBytesPerByte = 4;

// Elements, attributes, comments and whatever else becomes a node of the document's tree, some 200 bytes
// each; a recording has hundreds.
inline constexpr int64_t kNodes = 1'000'000;
inline constexpr int64_t kNameBytes = 64 << 20; // of their names, which the parser keeps

// Bytes of a file whose rows are looked for before it is parsed: some memory goes to each 256 KB of it.
inline constexpr int64_t kTextApart = int64_t{1} << 38;

// The model. A window shows some dozens; a hundred thousand would take seconds for every frame.
inline constexpr size_t kVariables = 10'000;
inline constexpr size_t kGroups = 10'000;
inline constexpr size_t kSets = 10'000;
// Characters of a name, unit or colour: some are measured and drawn in every frame and written for every set.
inline constexpr int kText = 5'000;
// Problems that are kept; of further ones only the number.
inline constexpr size_t kResults = 1000;

// Samples: so many, and one more for so many characters, which a full row keeps to. Rows that are empty, or
// shorter than the list of variables, could ask for a multiple of their text.
inline constexpr int64_t kSamplesOfAnyFile = 1 << 22;
inline constexpr int64_t kCharactersPerSample = 2;
// Values are the samples of all lines, as a table has them; many lines may show one variable. So many, or as
// many as samples are allowed: half of that or less is what full rows have. One of many decimals counts for
// six.
inline constexpr int64_t kValuesOfAnyFile = 1 << 25;
inline constexpr int64_t kValueOfManyDecimals = 6;
inline constexpr size_t kField = 4096; // characters of one field that are looked at

// A container may expand to this and to so many times its packed size more. Recordings come to 4 times, rows
// that are all alike to hundreds.
inline constexpr uint64_t kExpanded = 48 << 20;
inline constexpr uint64_t kExpansion = 32;

// What is shown. Decimals that reach the digits of the smallest normal number, and pixels far outside every
// window that 64-bit arithmetic can still handle.
inline constexpr int kDecimals = 40;
inline constexpr int kShownText = 400;           // characters of a text
inline constexpr int64_t kConsoleTexts = 50'000; // characters of all texts that the console's width heeds
inline constexpr float kPixel = 268435456.0F;
inline constexpr int kPictureSide = 16384; // pixels of a picture's side

} // namespace support::limits
