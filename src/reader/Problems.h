// What is wrong with a file: one result for each problem, and the list of them that a reader keeps.
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tracelyn {

// Nothing produces InvalidAttributeName, InvalidDisplayType and InvalidSetSize: their texts are ready for a
// reader that is stricter.
enum class ResultCode : int32_t {
    UnknownError = 0,
    XmlParseError = 1,
    InvalidRootName = 2,
    InvalidNodeName = 3,
    InvalidAttributeName = 4,
    InvalidAttributeValue = 5,
    InvalidDisplayType = 6,
    InvalidSetSize = 7,
    MissingNode = 8,
    MissingAttribute = 9,
    EmptyGroupName = 10,
    EmptyAttribute = 11,
    DataNotFound = 12,
};

struct ReadResult {
    ResultCode code = ResultCode::UnknownError;
    QString detail;

    // "<text of the code>" or "<text of the code>: <detail>".
    QString GetText() const;
};

// At most `most` of something are shown, `what` in the plural.
struct Cap {
    size_t most = 0;
    const char* what = nullptr;
    bool isReported = false;
};

// The problems in the order found. The constructor takes the memory for the list and for the text of Finish,
// so that a problem with a short detail can still be added when there is no more.
class CProblems {
public:
    CProblems();

    // Keeps the first limits::kMaxProblems and counts the others. A long detail is cut as ShownText does.
    void Add(ResultCode code, const QString& detail);
    // Keeps the problem however many there are, and its whole detail. For a handful in each file.
    void AddAlways(ResultCode code, const QString& detail);
    // Whether `count` reaches the cap. The first time is a problem, always kept.
    bool IsFull(Cap& cap, size_t count);
    // When problems were only counted, adds one that says how many. The last call.
    void Finish() noexcept;

    const std::vector<ReadResult>& GetResults() const { return m_Results; }

private:
    std::vector<ReadResult> m_Results;
    size_t m_nFurther = 0;
    QString m_strFurther; // room for the text of Finish
};

} // namespace Tracelyn
