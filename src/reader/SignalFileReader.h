// The interface through which the program loads any measurement file into the model.
#pragma once

#include "support/Progress.h"

#include <QString>

#include <utility>

namespace Tracelyn {

class CGraphData;

// The access level that a code grants: 1 to 3, which show more of a file's signals; 0, which shows what
// everybody may see, for any other text.
int LevelGrantedBy(const QString& code);

// How to use one: clear the model, construct the concrete reader, set the access level, read, ask for the
// name.
class CSignalFileReader {
public:
    CSignalFileReader() = default;
    CSignalFileReader(const CSignalFileReader&) = delete;
    CSignalFileReader& operator=(const CSignalFileReader&) = delete;
    virtual ~CSignalFileReader() = default;

    // Appends the file's groups and sets to `data`. Never throws; what could be read before a problem stays.
    virtual void ReadAnalysis(CGraphData& data, const QString& path) = 0;
    // The name of the analysis that was read; empty when the file gives none.
    virtual QString GetAnalysisName() const = 0;

    // 0 to 3, at first 0. Signals that require a higher level are left out.
    int GetAccessLevel() const { return m_nAccessLevel; }
    void SetAccessLevel(int level) { m_nAccessLevel = level; }

    // Told how far the reading has come; empty at first.
    const support::Progress& GetProgress() const { return m_Progress; }
    void SetProgress(support::Progress progress) { m_Progress = std::move(progress); }

private:
    int m_nAccessLevel = 0;
    support::Progress m_Progress;
};

} // namespace Tracelyn
