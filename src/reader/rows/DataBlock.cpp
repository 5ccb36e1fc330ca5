#include "reader/rows/DataBlock.h"

#include "reader/XmlVariable.h"
#include "reader/rows/SampleRows.h"
#include "reader/rows/SampleText.h"
#include "support/Limits.h"
#include "support/Parallel.h"

#include <QScopeGuard>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace Tracelyn {

namespace {

// The rows of a piece are those that begin behind its line feeds. The first piece also has the first row.
struct Piece {
    int64_t from = 0;
    int64_t to = 0;
    int64_t row = 0; // number of its first row
    int64_t rows = 0;
};

// Text of a piece, in memory that is used again for the next one.
class CPieceText {
public:
    std::string_view Text() const { return {m_Bytes.data(), m_nSize}; }
    void Clear() { m_nSize = 0; }
    // Makes the text longer and returns the new part, to be filled.
    std::span<char> Grow(int64_t count) {
        const size_t from = m_nSize;
        m_nSize += static_cast<size_t>(count);
        const size_t needed = m_nSize + CRowConverter::kReadableBehind;
        if (m_Bytes.size() < needed)
            m_Bytes.resize(std::max(needed, m_Bytes.size() * 2));
        return std::span(m_Bytes).subspan(from, static_cast<size_t>(count));
    }
    void Shorten(size_t count) { m_nSize -= count; }

private:
    std::vector<char> m_Bytes;
    size_t m_nSize = 0;
};

std::string_view FirstRows(std::string_view text, int64_t rows) {
    size_t end = 0;
    for (int64_t row = 0; row < rows; ++row)
        end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

class CBlockReader {
public:
    explicit CBlockReader(const CSampleText& text) : m_Text(text) {
        const int64_t size = std::max<int64_t>(1, text.GetSize());
        for (int64_t from = 0; from < size; from += CSampleText::kPieceBytes)
            m_Pieces.push_back(
                {.from = from, .to = std::min(from + CSampleText::kPieceBytes, text.GetSize())});
        m_Buffers.resize(static_cast<size_t>(support::WorkerCount(PieceCount())));
    }

    // Finds out which rows each piece has. Returns the number of rows; nothing when the text cannot be read.
    std::optional<int64_t> CountRows(const support::Progress& progress) {
        const auto count = [this](int worker, Piece& piece) {
            piece.rows = piece.from == 0 ? 1 : 0;
            if (const auto known = m_Text.KnownLineFeeds(piece.from, piece.to)) {
                piece.rows += *known;
                return true;
            }
            CPieceText& buffer = m_Buffers[static_cast<size_t>(worker)];
            if (!ReadPiece(piece, buffer))
                return false;
            piece.rows += CountLineFeeds(buffer.Text());
            return true;
        };
        if (ForEachPiece(count, progress) != PieceCount())
            return std::nullopt;
        int64_t rows = 0;
        for (Piece& piece : m_Pieces) {
            piece.row = rows;
            rows += piece.rows;
        }
        return rows;
    }

    // Convert will leave out the rows from number `rows` on.
    void KeepRows(int64_t rows) {
        while (m_Pieces.back().row >= rows && m_Pieces.size() > 1)
            m_Pieces.pop_back();
        Piece& last = m_Pieces.back();
        m_bCut = last.row + last.rows > rows;
        last.rows = std::min(last.rows, rows - last.row);
    }

    // Returns how many rows were converted, which are fewer than were counted when the text cannot be read or
    // has changed. The samples of all further rows are undefined then.
    int64_t Convert(std::span<const SampleColumn> columns, const support::Progress& progress) {
        std::vector<CRowConverter> converters(m_Buffers.size(), CRowConverter(columns));
        const auto convert = [&](int worker, const Piece& piece) {
            CPieceText& buffer = m_Buffers[static_cast<size_t>(worker)];
            if (piece.rows == 0)
                return true;
            if (!ReadPiece(piece, buffer) || !ReadToRowEnd(piece.to, buffer))
                return false;
            std::string_view text = buffer.Text();
            if (piece.from != 0)
                text = text.substr(text.find('\n') + 1);
            if (m_bCut && &piece == &m_Pieces.back())
                text = FirstRows(text, piece.rows);
            return converters[static_cast<size_t>(worker)].Convert(text, static_cast<size_t>(piece.row),
                                                                   static_cast<size_t>(piece.rows));
        };
        const int64_t pieces = ForEachPiece(convert, progress);
        return pieces == PieceCount() ? m_Pieces.back().row + m_Pieces.back().rows
                                      : m_Pieces[static_cast<size_t>(pieces)].row;
    }

private:
    int64_t PieceCount() const { return static_cast<int64_t>(m_Pieces.size()); }

    // Returns how many pieces are done before the first for which work(worker, piece) is false.
    template <class Work>
    int64_t ForEachPiece(Work work, const support::Progress& progress) {
        return support::ForEachParallel(
            PieceCount(),
            [&](int worker, int64_t item) { return work(worker, m_Pieces[static_cast<size_t>(item)]); },
            progress);
    }

    bool ReadPiece(const Piece& piece, CPieceText& buffer) const {
        buffer.Clear();
        return m_Text.Read(piece.from, buffer.Grow(piece.to - piece.from));
    }

    // Appends the rest of the row that is cut off at `at`, its line feed included; the last row gets one.
    bool ReadToRowEnd(int64_t at, CPieceText& buffer) const {
        constexpr int64_t kFirstStepBytes = 1024;
        for (int64_t step = kFirstStepBytes; at < m_Text.GetSize(); step *= 2) {
            const std::span<char> more = buffer.Grow(std::min(step, m_Text.GetSize() - at));
            if (!m_Text.Read(at, more))
                return false;
            const auto end = std::ranges::find(more, '\n');
            if (end != more.end()) {
                buffer.Shorten(static_cast<size_t>(more.end() - end) - 1);
                return true;
            }
            at += static_cast<int64_t>(more.size());
        }
        buffer.Grow(1).front() = '\n';
        return true;
    }

    const CSampleText& m_Text;
    std::vector<Piece> m_Pieces;
    bool m_bCut = false;               // the last piece has more rows than it counts
    std::vector<CPieceText> m_Buffers; // one for each thread
};

// How many of the rows support/Limits.h allows. `columns` counts the variables that a line shows.
int64_t RowsWithinLimits(int64_t rows, const CSampleText& text, int64_t columns) {
    const int64_t samples =
        support::limits::kFreeSamples + text.GetSize() / support::limits::kRowBytesPerSample;
    return std::min({rows, samples / columns, int64_t{std::numeric_limits<int>::max()}});
}

} // namespace

std::optional<QString> ReadDataBlock(const CSampleText& text, std::span<TypedDataBase* const> variables,
                                     const support::Progress& progress) {
    while (!variables.empty() && !variables.back()->HasStore())
        variables = variables.first(variables.size() - 1);
    if (variables.empty())
        return std::nullopt;

    // Shares of the whole after which the rows are counted and converted.
    constexpr double kCounted = 0.1;
    constexpr double kConverted = 0.95;
    const QString unreadable = QStringLiteral("The sample rows cannot be read to their end");
    bool isStopped = false;
    const support::Progress asked = [&](double done) {
        isStopped = isStopped || !support::Report(progress, done);
        return !isStopped;
    };
    CBlockReader block(text);
    const std::optional<int64_t> allRows = block.CountRows(support::StepOf(asked, 0, kCounted));
    if (!allRows)
        return isStopped ? kStoppedBeforeRows : unreadable;
    const int64_t rows =
        RowsWithinLimits(*allRows, text, std::ranges::count_if(variables, &TypedDataBase::HasStore));
    block.KeepRows(rows);

    int64_t converted = 0;
    {
        std::vector<SampleColumn> columns;
        columns.reserve(variables.size());
        // What was appended and not written is no sample, also when memory runs out on the way.
        const auto takeBack = qScopeGuard([&] {
            for (TypedDataBase* const variable : variables.first(columns.size()))
                variable->RemoveLast(static_cast<int>(rows - converted));
        });
        for (TypedDataBase* const variable : variables)
            columns.push_back(variable->Append(static_cast<int>(rows)));
        converted = block.Convert(columns, support::StepOf(asked, kCounted, kConverted));
    }
    // What is left out when this is stopped is made by the first picture.
    support::ForEachParallel(
        static_cast<int64_t>(variables.size()),
        [&](int /*worker*/, int64_t item) {
            variables[static_cast<size_t>(item)]->BuildIndex();
            return true;
        },
        support::StepOf(progress, kConverted, 1));
    if (converted < rows && isStopped)
        return QStringLiteral("Loading was stopped after %1 of %2 sample rows").arg(converted).arg(*allRows);
    if (converted < rows)
        return unreadable;
    if (rows < *allRows)
        return QStringLiteral("Only the first %1 of %2 sample rows are shown").arg(rows).arg(*allRows);
    return std::nullopt;
}

} // namespace Tracelyn
