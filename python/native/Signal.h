// A signal for Python: its samples as an array that needs no copy, and their scaled values.
#pragma once

#include "native/LoadedRecording.h"

#include <pybind11/numpy.h>

namespace Tracelyn {

// A signal as a group of a recording lists it. Keeps the recording.
class CSignal {
public:
    CSignal(RecordingPointer recording, const CGraphDataGroup& group, const CGraphDataSet& set)
        : m_pRecording(std::move(recording)), m_pGroup(&group), m_pSet(&set) {}

    const CGraphDataGroup& GetGroup() const { return *m_pGroup; }
    const CGraphDataSet& GetSet() const { return *m_pSet; }
    const CLoadedRecording& GetRecording() const { return *m_pRecording; }

private:
    RecordingPointer m_pRecording;
    const CGraphDataGroup* m_pGroup;
    const CGraphDataSet* m_pSet;
};

// Adds the class Signal, and fill_scaled, which writes the scaled values of signals into the rows of an
// array.
void AddSignal(pybind11::module_& module);

} // namespace Tracelyn
