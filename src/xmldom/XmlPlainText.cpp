#include "xmldom/XmlPlainText.h"

#include "support/Limits.h"
#include "support/LineFeeds.h"
#include "support/Parallel.h"
#include "support/SharedFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>
#include <vector>

namespace Tracelyn {

using support::CSharedFile;

namespace {

constexpr int64_t kWindow = XmlTextRange::kPiece;
constexpr size_t kLongestTag = 4096;
constexpr size_t kBlock = 1024;
constexpr std::string_view kWhiteSpace = " \t\r\n";

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

size_t CountPlain(std::string_view text) {
    size_t at = 0;
    while (at + kBlock <= text.size() && IsPlain(text.substr(at, kBlock)))
        at += kBlock;
    const auto* const end =
        std::find_if_not(text.begin() + at, text.end(), [](char c) { return IsPlain(c); });
    return static_cast<size_t>(end - text.begin());
}

// The text ends with a character that is only there to look at.
bool HasLoneCarriageReturn(std::string_view text) {
    for (size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1)) {
        if (at + 1 < text.size() && text[at + 1] != '\n')
            return true;
    }
    return false;
}

// Where the text behind a start tag begins when `text` begins with one of that name.
std::optional<size_t> TagLength(std::string_view text, std::string_view opening) {
    const size_t end = text.find_first_of("<>", opening.size());
    const bool isName =
        text.size() > opening.size() &&
        (kWhiteSpace.find(text[opening.size()]) != std::string_view::npos || text[opening.size()] == '>');
    if (!isName || end == std::string_view::npos || text[end] == '<' || text[end - 1] == '/')
        return std::nullopt;
    return end + 1;
}

// Reads a file window by window, each with the beginning of the next one.
class CWindow {
public:
    CWindow(CSharedFile& file, int64_t overlap) : m_File(file), m_nOverlap(overlap) {}

    // Empty when the file cannot be read.
    std::string_view Read(int64_t from) {
        const int64_t size = std::clamp<int64_t>(m_File.GetSize() - from, 0, kWindow + m_nOverlap);
        m_Buffer.resize(static_cast<size_t>(size));
        return m_File.Read(from, m_Buffer) ? std::string_view(m_Buffer.data(), m_Buffer.size())
                                           : std::string_view();
    }

private:
    CSharedFile& m_File;
    int64_t m_nOverlap;
    std::vector<char> m_Buffer;
};

std::optional<int64_t> FindTextStart(CSharedFile& file, std::string_view tagName) {
    const std::string opening = std::string(1, '<').append(tagName);
    CWindow window(file, kLongestTag);
    for (int64_t from = 0; from < file.GetSize(); from += kWindow) {
        const std::string_view text = window.Read(from);
        if (text.find('\0') != std::string_view::npos)
            return std::nullopt;
        for (size_t at = text.find(opening); at < kWindow; at = text.find(opening, at + 1)) {
            if (const auto length = TagLength(text.substr(at, kLongestTag), opening))
                return from + static_cast<int64_t>(at + *length);
        }
    }
    return std::nullopt;
}

// Looks at the text from `from` on, on all processor cores.
class CPlainTextScan {
public:
    CPlainTextScan(CSharedFile& file, int64_t from)
        : m_File(file), m_nFrom(from),
          m_Parts(static_cast<size_t>((file.GetSize() - from + kWindow - 1) / kWindow)) {}

    // The plain text when a "<" ends it.
    std::optional<XmlTextRange> Run(const support::Progress& progress) {
        const auto count = static_cast<int64_t>(m_Parts.size());
        std::vector<CWindow> windows(static_cast<size_t>(support::WorkerCount(count)), CWindow(m_File, 1));
        const int64_t last = support::ForEachParallel(
            count, [&](int worker, int64_t item) { return Look(windows[static_cast<size_t>(worker)], item); },
            progress);
        if (last == count)
            return std::nullopt;
        const auto parts = std::span(m_Parts).first(static_cast<size_t>(last) + 1);
        if (std::ranges::any_of(parts, &Part::hasLoneReturn) || std::ranges::all_of(parts, &Part::isBlank) ||
            parts.back().next != '<')
            return std::nullopt;
        XmlTextRange range{.from = m_nFrom, .size = last * kWindow, .lineFeeds = {}};
        range.size += static_cast<int64_t>(parts.back().plain);
        for (const Part& part : parts)
            range.lineFeeds.push_back(part.lineFeeds);
        return range;
    }

private:
    struct Part {
        size_t plain = 0;
        char next = '\0'; // behind the plain characters
        int64_t lineFeeds = 0;
        bool isBlank = true;
        bool hasLoneReturn = false;
    };

    // False when the text ends in this part.
    bool Look(CWindow& window, int64_t item) {
        const std::string_view text = window.Read(m_nFrom + item * kWindow);
        Part& part = m_Parts[static_cast<size_t>(item)];
        part.plain = std::min<size_t>(CountPlain(text), kWindow);
        const std::string_view plain = text.substr(0, part.plain);
        part.next = part.plain < text.size() ? text[part.plain] : '\0';
        part.lineFeeds = support::CountLineFeeds(plain);
        part.isBlank = plain.find_first_not_of(kWhiteSpace) == std::string_view::npos;
        part.hasLoneReturn = HasLoneCarriageReturn(text.substr(0, part.plain + 1));
        return part.plain == kWindow;
    }

    CSharedFile& m_File;
    int64_t m_nFrom;
    std::vector<Part> m_Parts;
};

} // namespace

std::optional<XmlTextRange> FindPlainText(CSharedFile& file, std::string_view tagName,
                                          const support::Progress& progress) {
    if (file.GetSize() > support::limits::kTextApart)
        return std::nullopt;
    const std::optional<int64_t> from = FindTextStart(file, tagName);
    if (!from)
        return std::nullopt;
    return CPlainTextScan(file, *from).Run(progress);
}

} // namespace Tracelyn
