// Loads an analysis file for the tool's commands.
#pragma once

#include "reader/ReadResult.h"

#include <QString>

#include <optional>
#include <vector>

namespace Tracelyn {

class CGraphData;

struct Analysis {
    QString name;
    std::vector<ReadResult> results;
};

// Fills `data`; its sample stores live until the next call. Empty, with the reason in `error`, when nothing
// could be read at all. Problems inside the file are results.
std::optional<Analysis> LoadAnalysis(const QString& path, int accessLevel, CGraphData& data, QString& error);

} // namespace Tracelyn
