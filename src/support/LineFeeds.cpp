#include "support/LineFeeds.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace support {

// Counted in bytes, block by block: the compiler then looks at many characters at once.
int64_t CountLineFeeds(std::string_view text) {
    constexpr size_t Block = std::numeric_limits<unsigned char>::max();
    int64_t count = 0;
    for (; !text.empty(); text.remove_prefix(std::min(Block, text.size()))) {
        unsigned char inBlock = 0;
        for (const char c : text.substr(0, Block))
            inBlock = static_cast<unsigned char>(inBlock + (c == '\n' ? 1 : 0));
        count += inBlock;
    }
    return count;
}

} // namespace support
