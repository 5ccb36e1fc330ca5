#include "reader/rows/UncheckedRows.h"

#include "reader/rows/PlainText.h"

#include <QScopeGuard>

#include <algorithm>
#include <array>

namespace Tracelyn {

// About how many rows an unchecked text has, from a few parts of it, and an eighth more. 0 when the parts
// have no row end or cannot be read.
int64_t GuessRows(const CSampleText& text) {
    constexpr int64_t kParts = 16;
    std::array<char, 1 << 14> part;
    int64_t rows = 0;
    for (int64_t i = 0; i < kParts; ++i) {
        if (!text.Read((text.GetSize() - std::ssize(part)) / (kParts - 1) * i, part))
            return 0;
        rows += CountLineFeeds({part.data(), part.size()});
    }
    if (rows == 0)
        return 0;
    // Rows may be shorter where nobody has looked.
    constexpr int64_t kFewMore = 1000;
    const auto size = static_cast<double>(text.GetSize());
    const double all = size / static_cast<double>(kParts * std::ssize(part)) * static_cast<double>(rows);
    return static_cast<int64_t>(all * 17 / 16) + kFewMore;
}

std::optional<int64_t> CRowNumbers::FirstOf(int64_t piece) {
    std::unique_lock lock(m_Mutex);
    const int64_t& first = m_First[static_cast<size_t>(piece)];
    m_Changed.wait(lock, [&first] { return first != kUnknown; });
    return first >= 0 ? std::optional(first) : std::nullopt;
}

void CRowNumbers::SetEnd(int64_t piece, int64_t row) {
    {
        const std::lock_guard lock(m_Mutex);
        int64_t& next = m_First[static_cast<size_t>(piece) + 1];
        if (next == kUnknown)
            next = row;
    }
    m_Changed.notify_all();
}

CUncheckedRows::CUncheckedRows(CRowPieces& pieces, std::span<const SampleColumn> columns, int64_t room)
    : m_Pieces(pieces), m_nRoom(room), m_Numbers(pieces.GetCount()),
      m_Converted(static_cast<size_t>(pieces.GetCount())),
      m_Converters(pieces.GetWorkers(), CRowConverter(columns)) {}

int64_t CUncheckedRows::Convert(const support::Progress& progress) {
    // A piece waits for those before it, so they must have begun. Of the items of ForEach some are left
    // out when it ends early, and these need not be the last ones.
    m_Pieces.ForEach(
        [this](const RowPiece& /*item*/, CPieceReader& reader, int worker) {
            const int64_t piece = m_nNext++;
            const bool isConverted = Convert(piece, reader, m_Converters[static_cast<size_t>(worker)]);
            m_Converted[static_cast<size_t>(piece)] = isConverted ? 1 : 0;
            return isConverted;
        },
        progress);
    m_nDone = std::ranges::find(m_Converted, 0) - m_Converted.begin();
    return m_Numbers.FirstOf(m_nDone).value_or(0);
}

bool CUncheckedRows::Convert(int64_t number, CPieceReader& reader, CRowConverter& converter) {
    const auto giveUp = qScopeGuard([&] { m_Numbers.GiveUp(number); });
    RowPiece& piece = m_Pieces[number];
    const auto text = reader.Read(piece, 1); // a line feed may follow a carriage return at the end
    if (!text)
        return false;
    const auto size = static_cast<size_t>(piece.to - piece.from);
    const PlainText look = LookAtPlainText(*text, size);
    if (look.size < size || look.hasLoneReturn) {
        m_bPlain = false;
        return false;
    }
    if (!look.isBlank)
        m_bHasText = true;
    const auto first = m_Numbers.FirstOf(number);
    if (!first)
        return false;
    piece.row = *first;
    piece.rows = look.lineFeeds + (number == 0 ? 1 : 0);
    if (piece.row + piece.rows > m_nRoom) {
        m_bHasRoom = false;
        return false;
    }
    m_Numbers.SetEnd(number, piece.row + piece.rows);
    if (piece.rows == 0)
        return true;
    const auto rows = reader.ReadToRowEnd(piece);
    return rows && m_Pieces.Convert(piece, *rows, converter);
}

} // namespace Tracelyn
