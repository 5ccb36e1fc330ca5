#include "Analysis.h"

#include "ExpandedAnalysis.h"
#include "ProgressLine.h"
#include "Terminal.h"
#include "XmlReader.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

Analysis Read(const QString& path, int accessLevel, CGraphData& data) {
    Tracelyn::CXmlReader reader;
    reader.SetAccessLevel(accessLevel);
    std::optional<CProgressLine> line;
    if (support::IsTerminal(stderr))
        reader.SetProgress([&line = line.emplace(stderr)](double done) { line.Show(done); });
    reader.ReadAnalysis(data, path);
    return {reader.GetAnalysisName(), reader.GetResults()};
}

std::optional<Analysis> ReadContainer(const QString& path, int accessLevel, CGraphData& data,
                                      QString& error) {
    // A folder of its own, so that several runs at the same time stay apart.
    error = QStringLiteral("Problem expanding analysis file");
    const QTemporaryDir folder;
    if (!folder.isValid() || !QFileInfo(path).isFile())
        return std::nullopt;
    const Tracelyn::CExpandedAnalysis expanded(path, folder.path() + QDir::separator());
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
