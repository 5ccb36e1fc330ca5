// Where the text of the sample rows lies: in memory, or still in its file.
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

// Read in pieces, by several threads at once. It ends with its last row: the line feeds behind that are cut
// off.
class CSampleText {
public:
    CSampleText() = default;
    CSampleText(const CSampleText&) = delete;
    CSampleText& operator=(const CSampleText&) = delete;
    virtual ~CSampleText() = default;

    // What readers best read at once, in bytes.
    static constexpr int64_t kPiece = 1 << 18;

    virtual int64_t GetSize() const = 0;
    // The line feeds in a piece that begins at a multiple of kPiece, when they are known without reading it.
    virtual std::optional<int64_t> KnownLineFeeds(int64_t /*from*/, int64_t /*to*/) const {
        return std::nullopt;
    }
    // Fills the whole span with the text from `at` on, which must have that much; false when it cannot be
    // read.
    virtual bool Read(int64_t at, std::span<char> text) const = 0;
};

// Borrows the text.
std::unique_ptr<CSampleText> SampleTextInMemory(std::string_view text);
// The part of the file of that place and size, in bytes. Its lines may also end with "\r\n". lineFeeds counts
// those of every piece and may be empty.
std::unique_ptr<CSampleText> SampleTextInFile(std::shared_ptr<support::CSharedFile> file, int64_t from,
                                              int64_t size, std::vector<int64_t> lineFeeds);

} // namespace Tracelyn
