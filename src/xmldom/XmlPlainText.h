// Finds text that means the same to a parser and to anybody else, so that it need not pass through the
// parser.
#pragma once

#include "support/Progress.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace support {
class CSharedFile;
}

namespace Tracelyn {

// A part of a file, in bytes.
struct XmlTextRange {
    static constexpr int64_t kPiece = 1 << 18;

    int64_t from = 0;
    int64_t size = 0;
    // The line feeds in every piece of that size, the last one shorter: counted while the text was looked at.
    std::vector<int64_t> lineFeeds;
};

// The text from the end of the first start tag of that name to the next "<". Nothing unless it is plain:
// printable ASCII, tabs and line ends, more than white space, without references, "]" and carriage returns
// that stand alone. Whether the tag is one indeed, and no part of a comment, is for the parser to say.
std::optional<XmlTextRange> FindPlainText(support::CSharedFile& file, std::string_view tagName,
                                          const support::Progress& progress);

} // namespace Tracelyn
