// Which text the parser would leave as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Tracelyn {

// What text is like from its beginning on. Plain means that the parser would change no more than its line
// ends: printable ASCII, tabs and line ends, without references, "<", "]" or lone carriage returns.
struct PlainText {
    size_t size = 0;            // up to the first character that is not plain, or all that was looked at
    int64_t lineFeeds = 0;      // in that
    bool isBlank = true;        // nothing but white space
    bool hasLoneReturn = false; // a carriage return before something other than a line feed
};

// Looks at the text's first `size` bytes, as fast as memory is read. What follows them tells whether a
// carriage return at their end is a lone one; without anything it is none.
PlainText LookAtPlainText(std::string_view text, size_t size);

} // namespace Tracelyn
