#include "native/LoadedRecording.h"

#include "native/Conversion.h"
#include "native/LongCall.h"
#include "native/Measuring.h"
#include "native/Picture.h"
#include "native/Signal.h"

#include "model/GraphDataVariants.h"

#include <QFileInfo>

#include <pybind11/stl.h>

#include <algorithm>

namespace py = pybind11;

namespace Tracelyn {

namespace {

// Python's exceptions have one kind for each usual reason.
PyObject* KindOfReadError(const QString& path) {
    const QFileInfo file(path);
    if (!file.exists())
        return PyExc_FileNotFoundError;
    if (file.isDir())
        return PyExc_IsADirectoryError;
    return file.isReadable() ? PyExc_OSError : PyExc_PermissionError;
}

[[noreturn]] void RaiseNotRead(const QString& path, const CRecording& recording) {
    if (!recording.IsDocumentRead()) {
        PyErr_SetString(KindOfReadError(path), recording.GetReason().toUtf8().constData());
    } else {
        QStringList problems;
        for (const ReadResult& problem : recording.GetProblems())
            problems.append(problem.GetText().trimmed());
        PyErr_SetString(PyExc_OSError, problems.join(u'\n').toUtf8().constData());
    }
    throw py::error_already_set();
}

const CGraphDataIndexSet* FindAxis(const CGraphData& data) {
    for (const auto& set : data.GetSets()) {
        if (const auto* const axis = dynamic_cast<const CGraphDataIndexSet*>(set.get()))
            return axis;
    }
    return nullptr;
}

// (name, unit, offset, factor, precision); a recording without an axis counts its samples.
py::tuple AxisOf(const CLoadedRecording& recording) {
    const CGraphDataIndexSet* const axis = FindAxis(recording.GetData());
    if (axis == nullptr)
        return py::make_tuple("", "", 0.0, 1.0, 0);
    return py::make_tuple(ToPython(axis->GetName()), ToPython(axis->GetUnit()), axis->GetUnitOffset(),
                          axis->GetUnitFactor(), axis->GetPrecision());
}

// (name, is shown, signals, reference lines as (name, value, unit)) for each group. That of the axis is left
// out.
py::list GroupsOf(const RecordingPointer& recording) {
    py::list groups;
    for (const auto& group : recording->GetData().GetGroups()) {
        py::list signals;
        py::list lines;
        bool isAxis = false;
        for (const CGraphDataSet* const set : group->m_Sets) {
            if (set->GetStore() != nullptr)
                signals.append(CSignal(recording, *group, *set));
            else if (dynamic_cast<const CGraphDataFixedSet*>(set) != nullptr)
                lines.append(py::make_tuple(ToPython(set->GetName()), set->GetScaledValue(0, kNoReference),
                                            ToPython(set->GetUnit())));
            else
                isAxis = true;
        }
        if (!isAxis || signals.size() + lines.size() > 0)
            groups.append(py::make_tuple(ToPython(group->m_strName),
                                         group->m_nDisplayType != DisplayType::None, signals, lines));
    }
    return groups;
}

py::list ProblemsOf(const CLoadedRecording& recording) {
    py::list problems;
    for (const ReadResult& problem : recording.GetRecording().GetProblems())
        problems.append(ToPython(problem.GetText().trimmed()));
    return problems;
}

} // namespace

RecordingPointer CLoadedRecording::Read(const std::string& path, int accessLevel) {
    const RecordingPointer loaded(new CLoadedRecording(FromPython(path)));
    CRecording& recording = loaded->m_Recording;
    CallUnlocked([&](const support::Progress& progress) {
        recording.Load(loaded->m_strPath, accessLevel, progress);
        for (const auto& group : recording.GetData().GetGroups()) {
            for (const CGraphDataSet* const set : group->m_Sets) {
                if (set->GetStore() != nullptr)
                    loaded->m_nSamples = std::max(loaded->m_nSamples, set->GetCount());
            }
        }
    });
    if (!recording.IsRead())
        RaiseNotRead(loaded->m_strPath, recording);
    return loaded;
}

void AddRecording(py::module_& module) {
    py::class_<CLoadedRecording, RecordingPointer>(module, "Recording", "What tracelyn.Recording shows.")
        .def_property_readonly("path", [](const CLoadedRecording& self) { return ToPython(self.GetPath()); })
        .def_property_readonly(
            "name", [](const CLoadedRecording& self) { return ToPython(self.GetRecording().GetName()); })
        .def_property_readonly("samples", &CLoadedRecording::GetSampleCount)
        .def_property_readonly("problems", ProblemsOf)
        .def_property_readonly("axis", AxisOf)
        .def_property_readonly("groups", GroupsOf)
        .def("statistics", StatisticsOfRecording, py::arg("from_"), py::arg("to"), py::arg("while_"))
        .def("plot", DrawPicture, py::kw_only(), py::arg("size"), py::arg("dark"), py::arg("cursor"),
             py::arg("fixed"), py::arg("zoom"), py::arg("scroll"), py::arg("console"), py::arg("toggle"),
             py::arg("events"), py::arg("compare"), py::arg("align"));
    module.def("read", CLoadedRecording::Read, py::arg("path"), py::arg("level"));
    module.def("compare", CompareRecordings, py::arg("good"), py::arg("other"), py::arg("align"),
               py::arg("tolerances"));
}

} // namespace Tracelyn
