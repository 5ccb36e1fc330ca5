// Converts rows that nobody has looked at before: checks, numbers and converts them in one go.
#pragma once

#include "reader/rows/RowPieces.h"
#include "reader/rows/SampleRows.h"
#include "reader/rows/SampleText.h"
#include "support/Progress.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace Tracelyn {

// About how many rows an unchecked text has, from a few parts of it, and some more. 0 when the parts have no
// row end or cannot be read. The text has some hundred thousand bytes or more.
int64_t GuessRows(const CSampleText& text);

// Tells each piece the number of its first row as soon as all pieces before have said how many rows they
// have.
class CRowNumbers {
public:
    explicit CRowNumbers(int64_t pieces) : m_First(static_cast<size_t>(pieces) + 1, kUnknown) {
        m_First.front() = 0;
    }

    // Waits for the pieces before. Nothing when one of them has given up.
    std::optional<int64_t> FirstOf(int64_t piece);
    // The piece has all its rows from its first one up to this one, which it leaves to the next piece.
    void SetEnd(int64_t piece, int64_t row);
    // Does nothing after SetEnd.
    void GiveUp(int64_t piece) { SetEnd(piece, kGivenUp); }

private:
    static constexpr int64_t kUnknown = -1;
    static constexpr int64_t kGivenUp = -2;

    std::mutex m_Mutex;
    std::condition_variable
        m_Changed; // not the waiting of atomics, which on Windows may miss what it waits for
    std::vector<int64_t> m_First;
};

// Serves one text.
class CUncheckedRows {
public:
    // Borrows both. The columns have room for that many rows.
    CUncheckedRows(CRowPieces& pieces, std::span<const SampleColumn> columns, int64_t room);

    // Returns how many rows were converted, from the first one on: fewer than all when the text cannot be
    // read or is not plain, when there is no room for more, or when the progress asks to stop.
    int64_t Convert(const support::Progress& progress);

    // Whether what was converted holds.
    bool IsPlain() const { return m_bPlain && (m_bHasText || m_nDone < m_Pieces.GetCount()); }
    bool HasRoom() const { return m_bHasRoom; }
    // How many bytes of the text were converted.
    int64_t GetDoneBytes() const { return m_nDone == 0 ? 0 : m_Pieces[m_nDone - 1].to; }

private:
    bool Convert(int64_t number, CPieceReader& reader, CRowConverter& converter);

    CRowPieces& m_Pieces;
    int64_t m_nRoom;
    CRowNumbers m_Numbers;
    std::vector<char> m_Converted;           // for each piece, whether it is
    std::vector<CRowConverter> m_Converters; // one for each thread
    std::atomic<int64_t> m_nNext = 0;
    int64_t m_nDone = 0; // pieces before the first that is not converted
    std::atomic<bool> m_bPlain = true;
    std::atomic<bool> m_bHasText = false;
    std::atomic<bool> m_bHasRoom = true;
};

} // namespace Tracelyn
