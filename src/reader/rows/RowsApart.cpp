#include "reader/rows/RowsApart.h"

#include "reader/rows/PlainText.h"
#include "reader/rows/SampleText.h"
#include "support/Limits.h"
#include "support/Parallel.h"
#include "support/SharedFile.h"
#include "xmldom/XmlDomDocument.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tracelyn {

using support::CSharedFile;

namespace {

constexpr int64_t kPieceBytes = CSampleText::kPieceBytes;
constexpr size_t kMaxTagBytes = 4096;
constexpr std::string_view kWhiteSpace = " \t\r\n";
// A shorter text is checked in no time.
constexpr int64_t kShortestGuess = 4 * kPieceBytes;

// A part of the file, in bytes, and the line feeds in each of its pieces if it was checked.
struct TextRange {
    int64_t from = 0;
    int64_t size = 0;
    bool isChecked = true;
    std::vector<int64_t> lineFeeds = {};
};

// The length of the start tag that `text` begins with; nothing when that is no whole tag of the name, or one
// without content. `opening` is "<" and the name.
std::optional<size_t> TagLength(std::string_view text, std::string_view opening) {
    const size_t end = text.find_first_of("<>", opening.size());
    const bool isName =
        text.size() > opening.size() &&
        (kWhiteSpace.find(text[opening.size()]) != std::string_view::npos || text[opening.size()] == '>');
    if (!isName || end == std::string_view::npos || text[end] == '<' || text[end - 1] == '/')
        return std::nullopt;
    return end + 1;
}

// Reads a file piece by piece, each with the first bytes of the next one.
class CWindow {
public:
    CWindow(const CSharedFile& file, int64_t overlap)
        : m_File(file), m_nOverlap(overlap),
          m_Buffer(std::make_unique_for_overwrite<char[]>(static_cast<size_t>(kPieceBytes + overlap))) {}

    // Pieces have at most kPieceBytes. Empty when the file cannot be read.
    std::string_view Read(int64_t from, int64_t pieceBytes = kPieceBytes) {
        const int64_t size = std::clamp<int64_t>(m_File.GetSize() - from, 0, pieceBytes + m_nOverlap);
        const std::span bytes(m_Buffer.get(), static_cast<size_t>(size));
        return m_File.Read(from, bytes) ? std::string_view(bytes.data(), bytes.size()) : std::string_view();
    }

private:
    const CSharedFile& m_File;
    int64_t m_nOverlap;
    std::unique_ptr<char[]> m_Buffer;
};

std::optional<int64_t> FindTextStart(const CSharedFile& file, std::string_view tagName,
                                     const support::Progress& progress) {
    constexpr int64_t kHeadBytes = 1 << 15; // usually more than stands before the text
    const std::string opening = std::string(1, '<').append(tagName);
    CWindow window(file, kMaxTagBytes);
    int64_t piece = kHeadBytes;
    for (int64_t from = 0; from < file.GetSize(); from += std::exchange(piece, kPieceBytes)) {
        const std::string_view text = window.Read(from, piece);
        if (text.find('\0') != std::string_view::npos || !support::Report(progress, 0))
            return std::nullopt;
        for (size_t at = text.find(opening); at < static_cast<size_t>(piece);
             at = text.find(opening, at + 1)) {
            if (const auto length = TagLength(text.substr(at, kMaxTagBytes), opening))
                return from + static_cast<int64_t>(at + *length);
        }
    }
    return std::nullopt;
}

// Finds out on all processor cores where the text that begins at `from` ends, and whether it is plain.
class CPlainTextScan {
public:
    CPlainTextScan(const CSharedFile& file, int64_t from)
        : m_File(file), m_nFrom(from),
          m_Parts(static_cast<size_t>((file.GetSize() - from + kPieceBytes - 1) / kPieceBytes)),
          m_Behind(m_Parts.size()) {}

    // The text up to the first "<"; nothing when it is not plain.
    std::optional<TextRange> Run(const support::Progress& progress) {
        const auto count = static_cast<int64_t>(m_Parts.size());
        std::vector<CWindow> windows;
        windows.reserve(static_cast<size_t>(support::WorkerCount(count)));
        for (int worker = 0; worker < support::WorkerCount(count); ++worker)
            windows.emplace_back(m_File, 1);
        const int64_t last = support::ForEachParallel(
            count, [&](int worker, int64_t item) { return Look(windows[static_cast<size_t>(worker)], item); },
            progress);
        if (last == count)
            return std::nullopt;
        const auto parts = std::span(m_Parts).first(static_cast<size_t>(last) + 1);
        if (std::ranges::any_of(parts, &PlainText::hasLoneReturn) ||
            std::ranges::all_of(parts, &PlainText::isBlank) || m_Behind[parts.size() - 1] != '<')
            return std::nullopt;
        TextRange range{.from = m_nFrom, .size = last * kPieceBytes};
        range.size += static_cast<int64_t>(parts.back().size);
        for (const PlainText& part : parts)
            range.lineFeeds.push_back(part.lineFeeds);
        return range;
    }

private:
    // Examines the piece of that number; false when the text ends in it.
    bool Look(CWindow& window, int64_t item) {
        const std::string_view text = window.Read(m_nFrom + item * kPieceBytes);
        const size_t size = std::min<size_t>(text.size(), kPieceBytes);
        PlainText& part = m_Parts[static_cast<size_t>(item)];
        part = LookAtPlainText(text, size);
        m_Behind[static_cast<size_t>(item)] = part.size < text.size() ? text[part.size] : '\0';
        return part.size == kPieceBytes;
    }

    const CSharedFile& m_File;
    int64_t m_nFrom;
    std::vector<PlainText> m_Parts;
    std::vector<char> m_Behind; // what stands behind the plain text of each
};

// The long text that begins at `from` and ends, as far as the end of the file tells, with the element.
// Nothing when it is short or ends in another way.
std::optional<TextRange> GuessText(const CSharedFile& file, int64_t from, std::string_view element) {
    constexpr int64_t kLookedAt = 1 << 14; // bytes at the end of the file
    const int64_t size = file.GetSize() - from;
    if (size < kShortestGuess)
        return std::nullopt;
    std::array<char, kLookedAt> end;
    if (!file.Read(file.GetSize() - kLookedAt, end))
        return std::nullopt;
    const std::string_view text(end.data(), end.size());
    const size_t tag = text.find('<');
    if (tag == std::string_view::npos || !text.substr(tag).starts_with(std::string("</").append(element)))
        return std::nullopt;
    return TextRange{.from = from, .size = size - kLookedAt + static_cast<int64_t>(tag), .isChecked = false};
}

// Whether the tag is one indeed, and no part of a comment, is for the parser to say.
std::optional<TextRange> FindText(const CSharedFile& file, std::string_view element, TextCheck check,
                                  const support::Progress& progress) {
    if (file.GetSize() > support::limits::kMaxFileBytesWithRowsApart)
        return std::nullopt;
    const std::optional<int64_t> from = FindTextStart(file, element, progress);
    if (!from)
        return std::nullopt;
    if (check == TextCheck::Later) {
        if (auto guess = GuessText(file, *from, element))
            return guess;
    }
    return CPlainTextScan(file, *from).Run(progress);
}

// The file as it would be without one part of it.
class CFileWithGap : public QIODevice {
public:
    // Borrows both.
    CFileWithGap(const CSharedFile& file, const TextRange& gap) : m_File(file), m_Gap(gap) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    // Whether anything behind the gap was asked for.
    bool IsPastTheGap() const { return m_nAt > m_Gap.from; }
    bool HasFailed() const { return m_bFailed; }

protected:
    qint64 readData(char* data, qint64 size) override {
        if (m_nAt == m_Gap.from)
            m_nAt += m_Gap.size;
        const int64_t end = m_nAt < m_Gap.from ? m_Gap.from : m_File.GetSize();
        const int64_t count = std::min<int64_t>(size, end - m_nAt);
        if (!m_File.Read(m_nAt, {data, static_cast<size_t>(count)})) {
            m_bFailed = true;
            return -1;
        }
        m_nAt += count;
        return count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    const CSharedFile& m_File;
    const TextRange& m_Gap;
    int64_t m_nAt = 0; // in the file
    bool m_bFailed = false;
};

} // namespace

// The parser reads the file without the text. What it makes of that stands for the file only if it saw the
// start tag just where the text was cut out, or failed before it came there.
bool LoadWithRowsApart(const QString& path, const char* element, CXmlDomDocument& document,
                       std::unique_ptr<CSampleText>& rows, QString& error, const support::Progress& progress,
                       TextCheck check) {
    rows.reset();
    std::shared_ptr<CSharedFile> file = CSharedFile::Open(path);
    std::optional<TextRange> range =
        file == nullptr ? std::nullopt : FindText(*file, element, check, progress);
    if (!range)
        return document.Load(path, error, progress);
    CFileWithGap rest(*file, *range);
    XmlTagWatch watch{.element = element, .tagEnd = {}};
    QString errorOfRest;
    const bool isLoaded = document.LoadDevice(rest, path, errorOfRest, &watch, progress);
    if (!isLoaded && !rest.HasFailed() && !rest.IsPastTheGap()) {
        error = errorOfRest;
        return false;
    }
    if (!isLoaded || watch.tagEnd != range->from - 1)
        return document.Load(path, error, progress);
    rows = range->isChecked
               ? SampleTextInFile(std::move(file), range->from, range->size, std::move(range->lineFeeds))
               : UncheckedTextInFile(std::move(file), range->from, range->size);
    return true;
}

} // namespace Tracelyn
