#include "reader/rows/RowPieces.h"

#include <algorithm>
#include <utility>

namespace Tracelyn {

namespace {

std::string_view FirstRows(std::string_view text, int64_t rows) {
    size_t end = 0;
    for (int64_t row = 0; row < rows; ++row)
        end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

} // namespace

std::optional<std::string_view> CPieceReader::Read(const RowPiece& piece, int64_t behind) {
    m_nSize = 0;
    const int64_t end = std::min(piece.to + behind, m_pText->GetSize());
    if (!m_pText->Read(piece.from, Grow(end - piece.from)))
        return std::nullopt;
    return Text();
}

// Makes the text longer and returns the new part, to be filled.
std::span<char> CPieceReader::Grow(int64_t count) {
    constexpr size_t kRoomForRow = 4096; // the end of a usual row
    const size_t from = m_nSize;
    m_nSize += static_cast<size_t>(count);
    const size_t needed = m_nSize + CRowConverter::kReadableBehind;
    if (m_nCapacity < needed) {
        const size_t capacity = std::max(needed + kRoomForRow, m_nCapacity * 2);
        auto bytes = std::make_unique_for_overwrite<char[]>(capacity);
        std::copy_n(m_Bytes.get(), from, bytes.get());
        m_Bytes = std::move(bytes);
        m_nCapacity = capacity;
    }
    // These are looked at, whatever they are.
    std::fill_n(m_Bytes.get() + m_nSize, CRowConverter::kReadableBehind, '\0');
    return {m_Bytes.get() + from, static_cast<size_t>(count)};
}

std::optional<std::string_view> CPieceReader::ReadToRowEnd(const RowPiece& piece) {
    constexpr int64_t kFirstStepBytes = 1024;
    m_nSize = static_cast<size_t>(piece.to - piece.from);
    int64_t at = piece.to;
    for (int64_t step = kFirstStepBytes; at < m_pText->GetSize(); step *= 2) {
        const std::span<char> more = Grow(std::min(step, m_pText->GetSize() - at));
        if (!m_pText->Read(at, more))
            return std::nullopt;
        const auto end = std::ranges::find(more, '\n');
        if (end != more.end()) {
            m_nSize -= static_cast<size_t>(more.end() - end) - 1;
            return Text();
        }
        at += static_cast<int64_t>(more.size());
    }
    Grow(1).front() = '\n';
    return Text();
}

CRowPieces::CRowPieces(const CSampleText& text) {
    const int64_t size = std::max<int64_t>(1, text.GetSize());
    for (int64_t from = 0; from < size; from += CSampleText::kPieceBytes)
        m_Pieces.push_back({.from = from, .to = std::min(from + CSampleText::kPieceBytes, text.GetSize())});
    for (int worker = 0; worker < support::WorkerCount(GetCount()); ++worker)
        m_Readers.emplace_back(text);
}

void CRowPieces::KeepRows(int64_t rows) {
    while (m_Pieces.back().row >= rows && m_Pieces.size() > 1)
        m_Pieces.pop_back();
    RowPiece& last = m_Pieces.back();
    m_bCut = last.row + last.rows > rows;
    last.rows = std::min(last.rows, rows - last.row);
}

bool CRowPieces::Convert(const RowPiece& piece, std::string_view wholeRows, CRowConverter& converter) const {
    if (piece.from != 0)
        wholeRows = wholeRows.substr(wholeRows.find('\n') + 1);
    if (m_bCut && &piece == &m_Pieces.back())
        wholeRows = FirstRows(wholeRows, piece.rows);
    return converter.Convert(wholeRows, static_cast<size_t>(piece.row), static_cast<size_t>(piece.rows));
}

} // namespace Tracelyn
