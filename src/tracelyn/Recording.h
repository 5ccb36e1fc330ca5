// A recording, read from its file: what a program includes first that works with recordings.
//
//     Tracelyn::CRecording recording;
//     if (!recording.Load(path))
//         return Complain(recording.GetReason());
//     for (const auto& group : recording.GetData().GetGroups()) {
//         for (const Tracelyn::CGraphDataSet* signal : group->m_Sets)
//             Show(group->m_strName, signal->GetName(), signal->GetUnit(), signal->GetSamples());
//     }
//
// The model is what GetData returns: groups in the order of the file, each with its signals and reference
// lines (model/GraphData.h, model/GraphDataGroup.h, model/GraphDataSet.h). Names need not be unique. The axis
// is a set in a group of its own, the first; a variable that two groups show is two sets with one store.
//
// Values. Samples count from 0 to GetCount(). CGraphDataSet::GetSamples gives those of the file, not copied,
// in their type. A value in the signal's unit is (sample + GetUnitOffset()) * GetUnitFactor(), rounded to 32
// bits: GetScaledValue for one, GetScaledValues for many. GetMinMax finds the extremes of a range of samples
// without reading all of them; they are not scaled, and a factor below 0 swaps the two.
//
// Further on: figures (measure/Statistics.h), switches of on/off signals (measure/Signals.h), deviations
// (measure/Comparison.h), tables (reader/csv/CsvExport.h), pictures (render/Graph.h, which needs a
// QGuiApplication). All texts are QStrings, and colours are 0x00BBGGRR.
//
// Life. The recording owns everything; what it gives out (references, pointers, spans) ends when it loads
// again or goes. It cannot be moved: keep it in a std::unique_ptr where it has to be.
//
// Errors. A file that cannot be read is no exception: Load returns false, and the reason is there to be
// shown. A damaged file gives what could be read, and a list of problems. Only std::bad_alloc is thrown.
//
// Threads. Each thread may load and use recordings of its own. Any number of threads may use one loaded
// recording by its const functions and those of its model, as long as nobody loads it again or changes it. A
// load uses several threads itself.
#pragma once

#include "model/GraphData.h"
#include "reader/AnalysisFile.h"
#include "reader/SignalFileReader.h"
#include "support/Progress.h"

#include <QString>

#include <memory>
#include <vector>

namespace Tracelyn {

class CTypedDataRegistry;

// The model and its samples live and go together, whatever else is loaded.
class CRecording {
public:
    CRecording();
    CRecording(const CRecording&) = delete;
    CRecording& operator=(const CRecording&) = delete;
    ~CRecording();

    // Reads an analysis file, .xml or .paf, in place of what was loaded before. Signals that require a higher
    // access level than this one (0 to 3, see LevelGrantedBy) are left out. Whether there is anything to look
    // at: true also for a file with problems of which some group could be read.
    // `progress` is called on this thread and must not throw. Asked to stop, a load keeps the samples that it
    // has read and says so in a problem; a container that is still being expanded gives nothing.
    bool Load(const QString& path, int accessLevel = 0, const support::Progress& progress = {});
    // The same into another model, such as that of a graph, instead of the recording's own. That model must
    // be cleared, or go, before this object loads again or goes.
    bool LoadInto(CGraphData& data, const QString& path, int accessLevel = 0,
                  const support::Progress& progress = {});

    CGraphData& GetData() { return m_Data; }
    const CGraphData& GetData() const { return m_Data; }

    // What the last load found.

    bool IsRead() const { return m_strReason.isEmpty(); }
    // Why there is nothing to look at, in a sentence that names the file; empty when there is something.
    const QString& GetReason() const { return m_strReason; }
    // The name that the file gives; empty when it gives none.
    const QString& GetName() const { return m_Analysis.name; }
    // What is wrong with the file, in the order found; GetText says it. Empty for a sound file.
    const std::vector<ReadResult>& GetProblems() const { return m_Analysis.results; }
    // Whether there was a readable file whose document went through the reader. If there was and nothing is
    // read, the problems say all.
    bool IsDocumentRead() const { return m_bDocumentRead; }
    // The same in the words of the reader.
    const Analysis& GetAnalysis() const { return m_Analysis; }

private:
    std::unique_ptr<CTypedDataRegistry> m_pSamples; // outlives the model, which points into it
    CGraphData m_Data;
    Analysis m_Analysis;
    QString m_strReason;
    bool m_bDocumentRead = false;
};

// Why that container gives no document, as GetReason says it. ExpandProblem::None: it holds none.
QString ReasonNotExpanded(const QString& path, ExpandProblem problem);

} // namespace Tracelyn
