// The plain document of a compressed analysis, there for as long as somebody reads it.
#pragma once

#include "support/Progress.h"

#include <QString>

namespace Tracelyn {

// The name under which a container holds its document and under which it is expanded.
QString AnalysisEntryName();

// Expands the document into the folder, which ends with a separator. The destructor deletes it, and with it
// whatever an earlier run left under that name, whether or not it was expanded.
class CExpandedAnalysis {
public:
    CExpandedAnalysis(const QString& containerPath, const QString& folder,
                      const support::Progress& progress = {});
    CExpandedAnalysis(const CExpandedAnalysis&) = delete;
    CExpandedAnalysis& operator=(const CExpandedAnalysis&) = delete;
    ~CExpandedAnalysis();

    // True for a sound container without a document too; reading Path() then fails.
    bool IsExpanded() const { return m_bExpanded; }
    QString Path() const { return m_strPath; }

private:
    QString m_strPath;
    bool m_bExpanded = false;
};

} // namespace Tracelyn
