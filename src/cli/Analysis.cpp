#include "cli/Analysis.h"

#include "cli/ProgressLine.h"
#include "reader/XmlReader.h"
#include "reader/container/ExpandedAnalysis.h"
#include "support/ScratchFolder.h"
#include "support/Terminal.h"

#include <QFileInfo>

namespace Tracelyn {

namespace {

// Part of a load that a container's expansion takes.
constexpr double kExpanded = 0.7;

Analysis Read(const QString& path, int accessLevel, CGraphData& data, const support::Progress& progress) {
    CXmlReader reader;
    reader.SetAccessLevel(accessLevel);
    reader.SetProgress(progress);
    reader.ReadAnalysis(data, path);
    return {reader.GetAnalysisName(), reader.GetResults()};
}

std::optional<Analysis> ReadContainer(const QString& path, int accessLevel, CGraphData& data, QString& error,
                                      const support::Progress& progress) {
    error = QStringLiteral("Problem expanding analysis file");
    const support::ScratchFolder folder;
    if (!folder.IsValid() || !QFileInfo(path).isFile())
        return std::nullopt;
    const CExpandedAnalysis expanded(path, folder.GetPath(), support::StepOf(progress, 0, kExpanded));
    if (!expanded.IsExpanded())
        return std::nullopt;
    return Read(expanded.Path(), accessLevel, data, support::StepOf(progress, kExpanded, 1));
}

} // namespace

std::optional<Analysis> LoadAnalysis(const QString& path, int accessLevel, CGraphData& data, QString& error) {
    CProgressLine line(stderr);
    support::Progress progress;
    if (support::IsTerminal(stderr))
        progress = [&line](double done) { line.Show(done); };
    const QFileInfo file(path);
    const QString extension = file.suffix().toLower();
    if (extension == QLatin1String("paf"))
        return ReadContainer(path, accessLevel, data, error, progress);
    if (extension != QLatin1String("xml")) {
        error = QStringLiteral("Unknown file extension: %1").arg(path);
        return std::nullopt;
    }
    if (!file.isFile() || !file.isReadable()) {
        error = QStringLiteral("Cannot read file: %1").arg(path);
        return std::nullopt;
    }
    return Read(path, accessLevel, data, progress);
}

} // namespace Tracelyn
