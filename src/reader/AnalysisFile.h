// The one road from a path to a model: chooses by the extension, expands a container, reads the document.
#pragma once

#include "model/GraphData.h"
#include "reader/Problems.h"
#include "reader/container/zip.h"
#include "support/Progress.h"
#include "support/ScratchFolder.h"

#include <QString>

#include <functional>
#include <vector>

namespace Tracelyn {

class CSignalFileReader;
class CTypedDataRegistry;

enum class LoadStatus {
    Read,             // the document went through a reader, whose results say what is wrong with it
    UnknownExtension, // neither .xml nor .paf, in whatever case; nothing was touched
    NotExpanded,      // a container without a way to its document, see `problem`; nothing was read
};

// What a load found. The words for a status are up to whoever shows it.
struct Analysis {
    LoadStatus status = LoadStatus::Read;
    ExpandProblem problem = ExpandProblem::None;
    QString name; // empty when the file gives none
    std::vector<ReadResult> results;
};

// Reads the document at the path through the reader, which has its access level and progress.
using ReadDocument = std::function<void(CSignalFileReader& reader, const QString& documentPath)>;

// Calls `read` once unless the status says otherwise. Deletes the samples of the load before, so the model
// that shows them must be cleared by then. The document of a container lies in a scratch folder that is gone
// when this returns. `progress` covers the whole load, the expansion included. Asked to stop, the load keeps
// what it has read, with a result that says how far that is; an expansion is NotExpanded then. Throws what
// `read` throws.
Analysis LoadAnalysis(const QString& path, int accessLevel, const ReadDocument& read,
                      const support::Progress& progress = {});

// Appends the file to `data`; its samples live until the next load.
Analysis LoadAnalysis(const QString& path, int accessLevel, CGraphData& data,
                      const support::Progress& progress = {});
// The same with samples that live in a registry of the caller, until its next load. Loads with different
// registries may run at the same time.
Analysis LoadAnalysis(CTypedDataRegistry& samples, const QString& path, int accessLevel, CGraphData& data,
                      const support::Progress& progress = {});

// The name under which a container holds its document.
QString AnalysisEntryName();

// The plain document of a container in a scratch folder of its own, which goes with this object.
class CExpandedAnalysis {
public:
    explicit CExpandedAnalysis(const QString& containerPath, const support::Progress& progress = {});

    // False when the container is not sound or nothing can be written. True for a sound container without a
    // document, too: there is no file at GetPath() then.
    bool IsExpanded() const { return m_Problem == ExpandProblem::None; }
    ExpandProblem GetProblem() const { return m_Problem; }
    const QString& GetPath() const { return m_strPath; }

private:
    support::CScratchFolder m_Folder;
    QString m_strPath;
    ExpandProblem m_Problem = ExpandProblem::NotWritten;
};

} // namespace Tracelyn
