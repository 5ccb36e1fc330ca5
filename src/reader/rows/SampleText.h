// The text of the sample rows, in memory or still in its file.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace support {
class CSharedFile;
}

namespace Tracelyn {

// Several threads read it at once, each a piece of its own. The line feeds behind the last row are no part
// of it.
class CSampleText {
public:
    CSampleText() = default;
    CSampleText(const CSampleText&) = delete;
    CSampleText& operator=(const CSampleText&) = delete;
    virtual ~CSampleText() = default;

    // The length of a piece: with its samples it stays in a processor core's own memory.
    static constexpr int64_t kPieceBytes = 1 << 18;

    virtual int64_t GetSize() const = 0;
    // The number of line feeds from `from`, a multiple of kPieceBytes, to `to`; nothing when they would have
    // to be counted.
    virtual std::optional<int64_t> KnownLineFeeds(int64_t /*from*/, int64_t /*to*/) const {
        return std::nullopt;
    }
    // Whether it is known to be plain, see PlainText.
    virtual bool IsChecked() const { return true; }
    // Fills the whole span with the text from `at` on. The text must be that long. False when it cannot be
    // read.
    virtual bool Read(int64_t at, std::span<char> text) const = 0;
};

// Borrows the text.
std::unique_ptr<CSampleText> SampleTextInMemory(std::string_view text);
// `size` bytes of the file from `from` on. Its lines may also end with "\r\n". lineFeeds has the number of
// line feeds in every piece, or nothing.
std::unique_ptr<CSampleText> SampleTextInFile(std::shared_ptr<support::CSharedFile> file, int64_t from,
                                              int64_t size, std::vector<int64_t> lineFeeds);

// The same of a part that only seems to be the text: nobody has looked at it.
std::unique_ptr<CSampleText> UncheckedTextInFile(std::shared_ptr<support::CSharedFile> file, int64_t from,
                                                 int64_t size);

// As fast as memory is read.
int64_t CountLineFeeds(std::string_view text);

} // namespace Tracelyn
