#include "reader/AnalysisFile.h"

#include "reader/XmlReader.h"
#include "reader/XmlVariable.h"

#include <QFileInfo>

namespace Tracelyn {

namespace {

// Share of a container's load that its expansion takes.
constexpr double kExpansionShare = 0.7;

Analysis LoadWith(CTypedDataRegistry& samples, const QString& path, int accessLevel, const ReadDocument& read,
                  const support::Progress& progress) {
    const QString extension = QFileInfo(path).suffix().toLower();
    const bool isContainer = extension == QLatin1String("paf");
    if (!isContainer && extension != QLatin1String("xml"))
        return {.status = LoadStatus::UnknownExtension, .problem = {}, .name = {}, .results = {}};
    CXmlReader reader(samples); // first: the samples of the load before need not stay beside the expansion
    reader.SetAccessLevel(accessLevel);
    if (isContainer) {
        const CExpandedAnalysis document(path, support::StepOf(progress, 0, kExpansionShare));
        if (!document.IsExpanded())
            return {.status = LoadStatus::NotExpanded,
                    .problem = document.GetProblem(),
                    .name = {},
                    .results = {}};
        reader.SetProgress(support::StepOf(progress, kExpansionShare, 1));
        read(reader, document.GetPath());
    } else {
        reader.SetProgress(progress);
        read(reader, path);
    }
    return {.status = LoadStatus::Read,
            .problem = {},
            .name = reader.GetAnalysisName(),
            .results = reader.GetResults()};
}

ReadDocument ReadInto(CGraphData& data) {
    return [&data](CSignalFileReader& reader, const QString& documentPath) {
        reader.ReadAnalysis(data, documentPath);
    };
}

} // namespace

Analysis LoadAnalysis(const QString& path, int accessLevel, const ReadDocument& read,
                      const support::Progress& progress) {
    return LoadWith(CTypedDataRegistry::Instance(), path, accessLevel, read, progress);
}

Analysis LoadAnalysis(const QString& path, int accessLevel, CGraphData& data,
                      const support::Progress& progress) {
    return LoadAnalysis(CTypedDataRegistry::Instance(), path, accessLevel, data, progress);
}

Analysis LoadAnalysis(CTypedDataRegistry& samples, const QString& path, int accessLevel, CGraphData& data,
                      const support::Progress& progress) {
    return LoadWith(samples, path, accessLevel, ReadInto(data), progress);
}

QString AnalysisEntryName() {
    return QStringLiteral("tmpandat.bin");
}

CExpandedAnalysis::CExpandedAnalysis(const QString& containerPath, const support::Progress& progress)
    : m_strPath(m_Folder.GetPath() + AnalysisEntryName()) {
    if (!m_Folder.IsValid())
        return;
    CZip container(containerPath);
    container.Expand(m_Folder.GetPath(), AnalysisEntryName(), progress);
    m_Problem = container.GetProblem();
}

} // namespace Tracelyn
