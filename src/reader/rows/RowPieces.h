// The text of the sample rows cut into pieces, which threads read and convert side by side.
#pragma once

#include "reader/rows/SampleRows.h"
#include "reader/rows/SampleText.h"
#include "support/Parallel.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Tracelyn {

// The rows of a piece are those that begin behind its line feeds. The first piece also has the first row.
struct RowPiece {
    int64_t from = 0;
    int64_t to = 0;
    int64_t row = 0; // number of its first row
    int64_t rows = 0;
};

// What a thread reads pieces with, in memory that is used again for the next one.
class CPieceReader {
public:
    // Borrows the text.
    explicit CPieceReader(const CSampleText& text) : m_pText(&text) {}

    // All return what they have read, which holds until the next call; nothing when the text cannot be read.

    // The piece, and so many bytes behind it if there are any.
    std::optional<std::string_view> Read(const RowPiece& piece, int64_t behind = 0);
    // After Read: the piece with the rest of its last row, the line feed included; the last row of the text
    // gets one. CRowConverter::kReadableBehind bytes behind it are readable.
    std::optional<std::string_view> ReadToRowEnd(const RowPiece& piece);

private:
    std::span<char> Grow(int64_t count);
    std::string_view Text() const { return {m_Bytes.get(), m_nSize}; }

    const CSampleText* m_pText;
    std::unique_ptr<char[]> m_Bytes;
    size_t m_nCapacity = 0;
    size_t m_nSize = 0;
};

class CRowPieces {
public:
    // Borrows the text.
    explicit CRowPieces(const CSampleText& text);

    int64_t GetCount() const { return static_cast<int64_t>(m_Pieces.size()); }
    RowPiece& operator[](int64_t piece) { return m_Pieces[static_cast<size_t>(piece)]; }

    // Leaves out the rows from number `rows` on. The numbers of the rows must be known.
    void KeepRows(int64_t rows);

    // Calls work(piece, reader, worker) as ForEachParallel does.
    template <class Work>
    int64_t ForEach(Work work, const support::Progress& progress) {
        return support::ForEachParallel(
            GetCount(),
            [&](int worker, int64_t item) {
                return work((*this)[item], m_Readers[static_cast<size_t>(worker)], worker);
            },
            progress);
    }
    size_t GetWorkers() const { return m_Readers.size(); }

    // Converts the rows of a piece out of its text, which has whole rows. False when there are others than
    // the piece says.
    bool Convert(const RowPiece& piece, std::string_view wholeRows, CRowConverter& converter) const;

private:
    std::vector<RowPiece> m_Pieces;
    std::vector<CPieceReader> m_Readers; // one for each thread
    bool m_bCut = false;                 // the last piece has more rows than it says
};

} // namespace Tracelyn
