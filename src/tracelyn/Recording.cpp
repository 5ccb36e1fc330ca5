#include "tracelyn/Recording.h"

#include "reader/XmlVariable.h"

#include <QDir>
#include <QFileInfo>

namespace Tracelyn {

namespace {

// Why nothing of the document went through the reader; empty when it did. `wasReadable` tells whether there
// was a readable file before.
QString ReasonNotRead(const QString& path, bool wasReadable, bool isStopped, const Analysis& analysis) {
    switch (analysis.status) {
    case LoadStatus::Read:
        break;
    case LoadStatus::UnknownExtension:
        return QStringLiteral("Unknown file extension: %1").arg(path);
    case LoadStatus::NotExpanded:
        return isStopped ? QStringLiteral("Reading was stopped: %1").arg(path)
                         : ReasonNotExpanded(path, analysis.problem);
    }
    // The reader reports such a file as a parse error; here it is an input that cannot be read.
    return wasReadable ? QString() : QStringLiteral("Cannot read file: %1").arg(path);
}

} // namespace

CRecording::CRecording()
    : m_pSamples(std::make_unique<CTypedDataRegistry>()), m_strReason(QStringLiteral("Nothing was read")) {}

CRecording::~CRecording() = default;

bool CRecording::Load(const QString& path, int accessLevel, const support::Progress& progress) {
    return LoadInto(m_Data, path, accessLevel, progress);
}

bool CRecording::LoadInto(CGraphData& data, const QString& path, int accessLevel,
                          const support::Progress& progress) {
    m_Analysis = {};
    m_strReason = QStringLiteral("Nothing was read"); // if memory runs out
    m_bDocumentRead = false;
    m_Data.Clear(); // it shows the samples of the load before, whatever model is loaded now
    data.Clear();
    const QFileInfo file(path);
    const bool isReadable = file.isFile() && file.isReadable();
    bool isStopped = false;
    const support::Progress noticed = [&](double done) {
        isStopped = !progress(done);
        return !isStopped;
    };
    m_Analysis = LoadAnalysis(*m_pSamples, path, accessLevel, data, progress ? noticed : support::Progress());
    m_strReason = ReasonNotRead(path, isReadable, isStopped, m_Analysis);
    m_bDocumentRead = m_strReason.isEmpty();
    if (!m_bDocumentRead)
        data.Clear();
    else if (!m_Analysis.results.empty() && data.GetGroups().empty())
        m_strReason = QStringLiteral("%1: %2").arg(path, m_Analysis.results.front().GetText().trimmed());
    return IsRead();
}

QString ReasonNotExpanded(const QString& path, ExpandProblem problem) {
    const QString text = QStringLiteral("Problem expanding analysis file: ");
    switch (problem) {
    case ExpandProblem::NotReadable:
        return QStringLiteral("Cannot read file: %1").arg(path);
    case ExpandProblem::NotWritten:
        return text + QStringLiteral("the temporary folder %1 cannot be written").arg(QDir::tempPath());
    case ExpandProblem::NoRoom:
        return text + QStringLiteral("the temporary folder %1 has no room for it").arg(QDir::tempPath());
    case ExpandProblem::None: // a sound container
        return text + QStringLiteral("%1 holds no analysis").arg(path);
    case ExpandProblem::Damaged:
        break;
    }
    return text + QStringLiteral("%1 is damaged or no container").arg(path);
}

} // namespace Tracelyn
