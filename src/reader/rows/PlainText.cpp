#include "reader/rows/PlainText.h"

#include <algorithm>
#include <array>

namespace Tracelyn {

namespace {

// Its line feeds can be counted in a byte.
constexpr size_t kBlockBytes = 240;

constexpr bool IsPlain(char c) {
    const bool isWhite = c == '\n' || c == '\r' || c == '\t';
    return isWhite || (c >= ' ' && c <= '~' && c != '&' && c != '<' && c != ']');
}

// The same for a whole block. One flag for each kind of other characters and no exit, so that the compiler
// looks at many characters at once.
bool IsPlain(std::string_view block) {
    std::array<unsigned char, 7> found{};
    for (const char c : block) {
        const auto code = static_cast<unsigned char>(c);
        found[0] |= static_cast<unsigned char>(code < '\t');
        found[1] |= static_cast<unsigned char>(static_cast<unsigned char>(code - '\v') <= '\f' - '\v');
        found[2] |= static_cast<unsigned char>(static_cast<unsigned char>(code - 14) < ' ' - 14);
        found[3] |= static_cast<unsigned char>(code > '~');
        found[4] |= static_cast<unsigned char>(code == '&');
        found[5] |= static_cast<unsigned char>(code == '<');
        found[6] |= static_cast<unsigned char>(code == ']');
    }
    return std::ranges::count(found, 0) == std::ssize(found);
}

// Counts the line feeds of a block that has only what most rows are made of: digits, points, minus signs,
// commas and line ends; "+" and "/", too. This is plain, and seen sooner than by IsPlain. -1 for others.
int CountInNumericBlock(const char* block) {
    unsigned char other = 0;
    unsigned char lineFeeds = 0;
    for (const char c : std::string_view(block, kBlockBytes)) {
        const auto isOther = static_cast<unsigned char>(static_cast<unsigned char>(c - '+') > '9' - '+');
        const auto isLineFeed = static_cast<unsigned char>(c == '\n');
        const auto isReturn = static_cast<unsigned char>(c == '\r');
        other |= static_cast<unsigned char>(isOther ^ isLineFeed ^ isReturn);
        lineFeeds = static_cast<unsigned char>(lineFeeds + isLineFeed);
    }
    return other == 0 ? lineFeeds : -1;
}

bool HasLoneReturn(std::string_view text) {
    for (size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1)) {
        if (at + 1 < text.size() && text[at + 1] != '\n')
            return true;
    }
    return false;
}

} // namespace

PlainText LookAtPlainText(std::string_view text, size_t size) {
    PlainText look;
    while (look.size + kBlockBytes <= size) {
        const std::string_view block = text.substr(look.size, kBlockBytes);
        const int lineFeeds = CountInNumericBlock(block.data());
        if (lineFeeds < 0 && !IsPlain(block))
            break;
        look.lineFeeds += lineFeeds >= 0 ? lineFeeds : std::ranges::count(block, '\n');
        look.size += kBlockBytes;
    }
    for (; look.size < size && IsPlain(text[look.size]); ++look.size)
        look.lineFeeds += text[look.size] == '\n' ? 1 : 0;
    look.isBlank = text.substr(0, look.size).find_first_not_of(" \t\r\n") == std::string_view::npos;
    look.hasLoneReturn = HasLoneReturn(text.substr(0, look.size + 1));
    return look;
}

} // namespace Tracelyn
