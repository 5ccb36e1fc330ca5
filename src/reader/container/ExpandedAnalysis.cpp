#include "reader/container/ExpandedAnalysis.h"

#include "reader/container/zip.h"

#include <QFile>

namespace Tracelyn {

QString AnalysisEntryName() {
    return QStringLiteral("tmpandat.bin");
}

CExpandedAnalysis::CExpandedAnalysis(const QString& containerPath, const QString& folder,
                                     const support::Progress& progress)
    : m_strPath(folder + AnalysisEntryName()) {
    // A container without a document must not lend an earlier one's.
    QFile::remove(m_strPath);
    m_bExpanded = CZip(containerPath).Expand(folder, AnalysisEntryName(), progress);
}

CExpandedAnalysis::~CExpandedAnalysis() {
    QFile::remove(m_strPath);
}

} // namespace Tracelyn
