#include "reader/rows/SampleText.h"

#include "support/SharedFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

namespace Tracelyn {

namespace {

class CMemoryText : public CSampleText {
public:
    explicit CMemoryText(std::string_view text) : m_Text(text.substr(0, text.find_last_not_of('\n') + 1)) {}

    int64_t GetSize() const override { return static_cast<int64_t>(m_Text.size()); }
    bool Read(int64_t at, std::span<char> text) const override {
        return m_Text.copy(text.data(), text.size(), static_cast<size_t>(at)) == text.size();
    }

private:
    std::string_view m_Text;
};

class CFileText : public CSampleText {
public:
    CFileText(std::shared_ptr<support::CSharedFile> file, int64_t from, int64_t size,
              std::vector<int64_t> lineFeeds, bool isChecked)
        : m_File(std::move(file)), m_nFrom(from), m_nSize(size), m_LineFeeds(std::move(lineFeeds)),
          m_bChecked(isChecked) {
        CutTrailingLineEnds();
    }

    int64_t GetSize() const override { return m_nSize; }
    bool Read(int64_t at, std::span<char> text) const override { return m_File->Read(m_nFrom + at, text); }

    bool IsChecked() const override { return m_bChecked; }
    std::optional<int64_t> KnownLineFeeds(int64_t from, int64_t to) const override {
        const auto piece = static_cast<size_t>(from / kPieceBytes);
        const bool isWhole = to - from == kPieceBytes;
        return isWhole && piece < m_LineFeeds.size() ? std::optional(m_LineFeeds[piece]) : std::nullopt;
    }

private:
    void CutTrailingLineEnds() {
        std::array<char, 4096> buffer;
        while (m_nSize > 0) {
            const auto count = static_cast<size_t>(std::min<int64_t>(m_nSize, buffer.size()));
            const std::span<char> bytes = std::span(buffer).first(count);
            if (!m_File->Read(m_nFrom + m_nSize - static_cast<int64_t>(count), bytes))
                return; // whoever reads the rows meets the error again
            const size_t last = std::string_view(bytes.data(), count).find_last_not_of("\r\n");
            const size_t kept = last == std::string_view::npos ? 0 : last + 1;
            m_nSize -= static_cast<int64_t>(count - kept);
            if (kept > 0)
                return;
        }
    }

    std::shared_ptr<support::CSharedFile> m_File;
    int64_t m_nFrom;
    int64_t m_nSize;
    std::vector<int64_t> m_LineFeeds;
    bool m_bChecked;
};

} // namespace

std::unique_ptr<CSampleText> SampleTextInMemory(std::string_view text) {
    return std::make_unique<CMemoryText>(text);
}

std::unique_ptr<CSampleText> SampleTextInFile(std::shared_ptr<support::CSharedFile> file, int64_t from,
                                              int64_t size, std::vector<int64_t> lineFeeds) {
    return std::make_unique<CFileText>(std::move(file), from, size, std::move(lineFeeds), true);
}

std::unique_ptr<CSampleText> UncheckedTextInFile(std::shared_ptr<support::CSharedFile> file, int64_t from,
                                                 int64_t size) {
    return std::make_unique<CFileText>(std::move(file), from, size, std::vector<int64_t>(), false);
}

// Counted in bytes, block by block: the compiler then looks at many characters at once.
int64_t CountLineFeeds(std::string_view text) {
    constexpr size_t kBlock = std::numeric_limits<unsigned char>::max();
    int64_t count = 0;
    for (; !text.empty(); text.remove_prefix(std::min(kBlock, text.size()))) {
        unsigned char inBlock = 0;
        for (const char c : text.substr(0, kBlock))
            inBlock = static_cast<unsigned char>(inBlock + (c == '\n' ? 1 : 0));
        count += inBlock;
    }
    return count;
}

} // namespace Tracelyn
