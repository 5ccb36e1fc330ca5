// One problem found while reading a file, and its words.
#pragma once

#include <QString>

#include <cstdint>

namespace Tracelyn {

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

} // namespace Tracelyn
