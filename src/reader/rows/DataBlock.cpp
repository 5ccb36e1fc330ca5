#include "reader/rows/DataBlock.h"

#include "reader/XmlVariable.h"
#include "reader/rows/RowPieces.h"
#include "reader/rows/UncheckedRows.h"
#include "support/Limits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

namespace Tracelyn {

namespace {

// Shares of the whole after which the rows are counted and converted.
constexpr double kCounted = 0.1;
constexpr double kConverted = 0.95;

const QString kUnreadable = QStringLiteral("The sample rows cannot be read to their end");

using Variables = std::span<TypedDataBase* const>;

// Those that take part: none behind the last one that a line shows.
Variables UpToTheLastShown(Variables variables) {
    while (!variables.empty() && !variables.back()->HasStore())
        variables = variables.first(variables.size() - 1);
    return variables;
}

// The most rows that support/Limits.h allows.
int64_t RowLimit(const CSampleText& text, Variables variables) {
    const int64_t columns = std::max<int64_t>(1, std::ranges::count_if(variables, &TypedDataBase::HasStore));
    const int64_t samples =
        support::limits::kFreeSamples + text.GetSize() / support::limits::kRowBytesPerSample;
    return std::min<int64_t>(samples / columns, std::numeric_limits<int>::max());
}

// Appends rows to the variables, and takes back what was not written when it goes, also when memory runs out
// on the way.
class CAppendedRows {
public:
    CAppendedRows(Variables variables, int64_t rows) : m_Variables(variables), m_nRows(rows) {
        m_Columns.reserve(variables.size());
        try {
            for (TypedDataBase* const variable : variables)
                m_Columns.push_back(variable->Append(static_cast<int>(rows)));
        } catch (...) {
            TakeBack();
            throw;
        }
    }
    CAppendedRows(const CAppendedRows&) = delete;
    CAppendedRows& operator=(const CAppendedRows&) = delete;
    ~CAppendedRows() { TakeBack(); }

    std::span<const SampleColumn> GetColumns() const { return m_Columns; }
    // The first rows of that number are written, and stay.
    void Keep(int64_t rows) { m_nWritten = rows; }

private:
    void TakeBack() {
        for (TypedDataBase* const variable : m_Variables.first(m_Columns.size()))
            variable->RemoveLast(static_cast<int>(m_nRows - m_nWritten));
    }

    Variables m_Variables;
    int64_t m_nRows;
    int64_t m_nWritten = 0;
    std::vector<SampleColumn> m_Columns;
};

// What is left out when this is stopped is made by the first picture.
void BuildIndexes(Variables variables, const support::Progress& progress) {
    support::ForEachParallel(
        std::ssize(variables),
        [&](int /*worker*/, int64_t item) {
            variables[static_cast<size_t>(item)]->BuildIndex();
            return true;
        },
        progress);
}

// Finds out which rows each piece has. Returns the number of rows; nothing when the text cannot be read.
std::optional<int64_t> CountRows(CRowPieces& pieces, const CSampleText& text,
                                 const support::Progress& progress) {
    const auto count = [&text](RowPiece& piece, CPieceReader& reader, int /*worker*/) {
        piece.rows = piece.from == 0 ? 1 : 0;
        if (const auto known = text.KnownLineFeeds(piece.from, piece.to)) {
            piece.rows += *known;
            return true;
        }
        const auto read = reader.Read(piece);
        if (read)
            piece.rows += CountLineFeeds(*read);
        return read.has_value();
    };
    if (pieces.ForEach(count, progress) != pieces.GetCount())
        return std::nullopt;
    int64_t rows = 0;
    for (int64_t i = 0; i < pieces.GetCount(); ++i) {
        pieces[i].row = rows;
        rows += pieces[i].rows;
    }
    return rows;
}

// Returns how many rows were converted, which are fewer than were counted when the text cannot be read or has
// changed. The samples of all further rows are undefined then.
int64_t ConvertCounted(CRowPieces& pieces, std::span<const SampleColumn> columns,
                       const support::Progress& progress) {
    std::vector<CRowConverter> converters(pieces.GetWorkers(), CRowConverter(columns));
    const auto convert = [&](const RowPiece& piece, CPieceReader& reader, int worker) {
        if (piece.rows == 0)
            return true;
        const auto text = reader.Read(piece) ? reader.ReadToRowEnd(piece) : std::nullopt;
        return text && pieces.Convert(piece, *text, converters[static_cast<size_t>(worker)]);
    };
    const int64_t done = pieces.ForEach(convert, progress);
    return done == pieces.GetCount() ? pieces[done - 1].row + pieces[done - 1].rows : pieces[done].row;
}

} // namespace

std::optional<QString> ReadDataBlock(const CSampleText& text, Variables variables,
                                     const support::Progress& progress) {
    variables = UpToTheLastShown(variables);
    if (variables.empty())
        return std::nullopt;

    bool isStopped = false;
    const support::Progress asked = [&](double done) {
        isStopped = isStopped || !support::Report(progress, done);
        return !isStopped;
    };
    CRowPieces pieces(text);
    const std::optional<int64_t> allRows = CountRows(pieces, text, support::StepOf(asked, 0, kCounted));
    if (!allRows)
        return isStopped ? kStoppedBeforeRows : kUnreadable;
    const int64_t rows = std::min(*allRows, RowLimit(text, variables));
    pieces.KeepRows(rows);

    int64_t converted = 0;
    {
        CAppendedRows appended(variables, rows);
        converted =
            ConvertCounted(pieces, appended.GetColumns(), support::StepOf(asked, kCounted, kConverted));
        appended.Keep(converted);
    }
    BuildIndexes(variables, support::StepOf(progress, kConverted, 1));
    if (converted < rows && isStopped)
        return QStringLiteral("Loading was stopped after %1 of %2 sample rows").arg(converted).arg(*allRows);
    if (converted < rows)
        return kUnreadable;
    if (rows < *allRows)
        return QStringLiteral("Only the first %1 of %2 sample rows are shown").arg(rows).arg(*allRows);
    return std::nullopt;
}

bool ReadUncheckedBlock(const CSampleText& text, Variables variables, const support::Progress& progress,
                        std::optional<QString>& problem) {
    variables = UpToTheLastShown(variables);
    const int64_t room = variables.empty() ? 0 : std::min(GuessRows(text), RowLimit(text, variables));
    if (room == 0)
        return false;
    bool isStopped = false;
    const support::Progress asked = [&](double done) {
        isStopped = isStopped || !support::Report(progress, done);
        return !isStopped;
    };
    CRowPieces pieces(text);
    int64_t converted = 0;
    int64_t doneBytes = 0;
    try {
        CAppendedRows appended(variables, room);
        CUncheckedRows rows(pieces, appended.GetColumns(), room);
        converted = rows.Convert(support::StepOf(asked, 0, kConverted));
        if (!rows.IsPlain() || !rows.HasRoom())
            return false;
        appended.Keep(converted);
        doneBytes = rows.GetDoneBytes();
    } catch (const std::bad_alloc&) {
        return false; // the guess may have asked for more than is needed
    }
    BuildIndexes(variables, support::StepOf(progress, kConverted, 1));
    if (doneBytes == text.GetSize())
        return true;
    if (!isStopped) {
        problem = kUnreadable;
    } else if (doneBytes == 0) {
        problem = kStoppedBeforeRows;
    } else {
        const double all = static_cast<double>(converted) * static_cast<double>(text.GetSize()) /
                           static_cast<double>(doneBytes);
        problem = QStringLiteral("Loading was stopped after %1 of about %2 sample rows")
                      .arg(converted)
                      .arg(std::llround(all));
    }
    return true;
}

} // namespace Tracelyn
