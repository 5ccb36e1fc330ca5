#include "reader/AnalysisFile.h"

#include "reader/XmlReader.h"
#include "reader/container/zip.h"

#include <QFileInfo>

namespace Tracelyn {

namespace {

// Share of a container's load that its expansion takes.
constexpr double kExpansionShare = 0.7;

} // namespace

Analysis LoadAnalysis(const QString& path, int accessLevel, const ReadDocument& read,
                      const support::Progress& progress) {
    const QString extension = QFileInfo(path).suffix().toLower();
    const bool isContainer = extension == QLatin1String("paf");
    if (!isContainer && extension != QLatin1String("xml"))
        return {.status = LoadStatus::UnknownExtension, .name = {}, .results = {}};
    CXmlReader reader; // first: the samples of the load before need not stay beside the expansion
    reader.SetAccessLevel(accessLevel);
    if (isContainer) {
        const CExpandedAnalysis document(path, support::StepOf(progress, 0, kExpansionShare));
        if (!document.IsExpanded())
            return {.status = LoadStatus::NotExpanded, .name = {}, .results = {}};
        reader.SetProgress(support::StepOf(progress, kExpansionShare, 1));
        read(reader, document.GetPath());
    } else {
        reader.SetProgress(progress);
        read(reader, path);
    }
    return {.status = LoadStatus::Read, .name = reader.GetAnalysisName(), .results = reader.GetResults()};
}

Analysis LoadAnalysis(const QString& path, int accessLevel, CGraphData& data,
                      const support::Progress& progress) {
    const auto read = [&data](CSignalFileReader& reader, const QString& documentPath) {
        reader.ReadAnalysis(data, documentPath);
    };
    return LoadAnalysis(path, accessLevel, read, progress);
}

QString AnalysisEntryName() {
    return QStringLiteral("tmpandat.bin");
}

CExpandedAnalysis::CExpandedAnalysis(const QString& containerPath, const support::Progress& progress)
    : m_strPath(m_Folder.GetPath() + AnalysisEntryName()),
      m_bExpanded(m_Folder.IsValid() &&
                  CZip(containerPath).Expand(m_Folder.GetPath(), AnalysisEntryName(), progress)) {}

} // namespace Tracelyn
