#include "Analysis.h"

#include "ExpandedAnalysis.h"
#include "ScratchFolder.h"
#include "XmlReader.h"

#include <QFileInfo>

namespace {

Analysis Read(const QString& path, int accessLevel, CGraphData& data) {
    Tracelyn::CXmlReader reader;
    reader.SetAccessLevel(accessLevel);
    reader.ReadAnalysis(data, path);
    return {reader.GetAnalysisName(), reader.GetResults()};
}

std::optional<Analysis> ReadContainer(const QString& path, int accessLevel, CGraphData& data,
                                      QString& error) {
    error = QStringLiteral("Problem expanding analysis file");
    const support::ScratchFolder folder;
    if (!folder.IsValid() || !QFileInfo(path).isFile())
        return std::nullopt;
    const Tracelyn::CExpandedAnalysis expanded(path, folder.GetPath());
    if (!expanded.IsExpanded())
        return std::nullopt;
    return Read(expanded.Path(), accessLevel, data);
}

} // namespace

std::optional<Analysis> LoadAnalysis(const QString& path, int accessLevel, CGraphData& data, QString& error) {
    const QFileInfo file(path);
    const QString extension = file.suffix().toLower();
    if (extension == QLatin1String("paf"))
        return ReadContainer(path, accessLevel, data, error);
    if (extension != QLatin1String("xml")) {
        error = QStringLiteral("Unknown file extension: %1").arg(path);
        return std::nullopt;
    }
    if (!file.isFile() || !file.isReadable()) {
        error = QStringLiteral("Cannot read file: %1").arg(path);
        return std::nullopt;
    }
    return Read(path, accessLevel, data);
}
