#include "native/Signal.h"

#include "native/Conversion.h"
#include "native/LongCall.h"

#include "support/Parallel.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <type_traits>
#include <variant>
#include <vector>

namespace py = pybind11;

namespace Tracelyn {

namespace {

// Samples that a thread takes at a time.
constexpr int64_t kItem = 65536;

// The numbers that GetScaledValue gives for the samples from `first` on; behind the last sample it is
// repeated. In one pass, which a table of 32-bit numbers in between would double.
void WriteScaled(const CGraphDataSet& set, int64_t first, std::span<double> values) {
    const double offset = set.GetUnitOffset();
    const double factor = set.GetUnitFactor();
    const auto scaled = [=](double value) { return double{static_cast<float>((value + offset) * factor)}; };
    const auto write = [&](const auto& samples) {
        if constexpr (!std::is_same_v<std::remove_cvref_t<decltype(samples)>, std::monostate>) {
            const auto there = samples.subspan(std::min(static_cast<size_t>(first), samples.size()));
            const auto own = there.first(std::min(there.size(), values.size()));
            std::ranges::transform(own, values.begin(), scaled);
            values = values.subspan(own.size());
        }
    };
    std::visit(write, set.GetSamples());
    std::ranges::fill(values, scaled(set.GetValue(set.GetCount(), kNoReference)));
}

// Writes the scaled values of each set into a row of the table, on all cores. A set with fewer samples
// repeats its last one.
void WriteTable(std::span<const CGraphDataSet* const> sets, std::span<double> table,
                const support::Progress& progress) {
    if (table.empty())
        return;
    const auto samples = std::ssize(table) / std::ssize(sets);
    const int64_t itemsPerSet = (samples + kItem - 1) / kItem;
    const auto write = [&](int /*worker*/, int64_t item) {
        const auto row = static_cast<size_t>(item / itemsPerSet);
        const int64_t first = item % itemsPerSet * kItem;
        const auto count = static_cast<size_t>(std::min(kItem, samples - first));
        const auto at = row * static_cast<size_t>(samples) + static_cast<size_t>(first);
        WriteScaled(*sets[row], first, table.subspan(at, count));
        return true;
    };
    support::ForEachParallel(std::ssize(sets) * itemsPerSet, write, progress);
}

using Table = py::array_t<double, py::array::c_style>;

void FillScaled(const std::vector<CSignal>& signals, Table& table) {
    std::vector<const CGraphDataSet*> sets;
    sets.reserve(signals.size());
    for (const CSignal& signal : signals)
        sets.push_back(&signal.GetSet());
    if (table.ndim() != 2 || table.shape(0) != std::ssize(sets))
        throw py::value_error("the table needs a row for each signal");
    const std::span values(table.mutable_data(), static_cast<size_t>(table.size()));
    CallUnlocked([&](const support::Progress& progress) { WriteTable(sets, values, progress); });
}

// An array over the samples themselves, which keeps the signal, and so the recording.
py::array ValuesOf(const py::object& self) {
    const auto& set = self.cast<const CSignal&>().GetSet();
    return std::visit(
        [&](const auto& samples) -> py::array {
            using Span = std::remove_cvref_t<decltype(samples)>;
            if constexpr (std::is_same_v<Span, std::monostate>) {
                return py::array_t<float>(0);
            } else {
                py::array values(py::dtype::of<typename Span::value_type>(), samples.size(), samples.data(),
                                 self);
                values.attr("setflags")(py::arg("write") = false);
                return values;
            }
        },
        set.GetSamples());
}

py::array ScaledOf(const CSignal& signal) {
    const auto count = static_cast<size_t>(signal.GetSet().GetCount());
    py::array_t<double> values(static_cast<py::ssize_t>(count));
    const std::span room(values.mutable_data(), count);
    const std::array sets{&signal.GetSet()};
    CallUnlocked([&](const support::Progress& progress) { WriteTable(sets, room, progress); });
    return values;
}

py::str ColorOf(const CSignal& signal) {
    const ColorRef color = signal.GetSet().GetColor();
    const ColorRef rgb = (color & 0xFFU) << 16U | (color & 0xFF00U) | (color >> 16U & 0xFFU);
    return ToPython(QStringLiteral("#%1").arg(rgb, 6, 16, QLatin1Char('0')));
}

bool IsShown(const CSignal& signal) {
    return signal.GetGroup().m_nDisplayType != DisplayType::None &&
           signal.GetSet().GetDisplayType() != DisplayType::None;
}

py::str TextOf(const CSignal& signal) {
    const CGraphDataSet& set = signal.GetSet();
    return ToPython(
        QStringLiteral("<tracelyn.Signal '%1' of '%2', %3 samples in '%4'>")
            .arg(set.GetName(), signal.GetGroup().m_strName, QString::number(set.GetCount()), set.GetUnit()));
}

} // namespace

void AddSignal(py::module_& module) {
    py::class_<CSignal>(
        module, "Signal",
        "One recorded quantity as a group of the recording shows it. len() gives its samples.\n\n"
        "A signal keeps its recording in memory, and so does each of its arrays.")
        .def("__len__", [](const CSignal& self) { return self.GetSet().GetCount(); })
        .def("__repr__", TextOf)
        .def_property_readonly(
            "name", [](const CSignal& self) { return ToPython(self.GetSet().GetName()); },
            "Name, a str. Several signals of a recording may have the same one.")
        .def_property_readonly(
            "group", [](const CSignal& self) { return ToPython(self.GetGroup().m_strName); },
            "Name of the group that lists the signal, a str.")
        .def_property_readonly(
            "unit", [](const CSignal& self) { return ToPython(self.GetSet().GetUnit()); },
            "Unit of the scaled values, a str; empty when the file gives none.")
        .def_property_readonly(
            "unit_offset", [](const CSignal& self) { return self.GetSet().GetUnitOffset(); },
            "What is added to a recorded value before it is multiplied, a float.")
        .def_property_readonly(
            "unit_factor", [](const CSignal& self) { return self.GetSet().GetUnitFactor(); },
            "What the sum of a recorded value and the offset is multiplied by, a float.")
        .def_property_readonly(
            "precision", [](const CSignal& self) { return self.GetSet().GetPrecision(); },
            "Decimals with which the program prints a scaled value, an int as the file gives it.")
        .def_property_readonly("color", ColorOf, "Colour of the curve as '#rrggbb'.")
        .def_property_readonly(
            "is_binary", [](const CSignal& self) { return self.GetSet().IsBinary(); },
            "Whether it is an on/off signal: 0 is off, any other value is on.")
        .def_property_readonly("is_shown", IsShown, "Whether the picture or its console shows the signal.")
        .def_property_readonly(
            "values", ValuesOf,
            "Recorded values, a numpy array of shape (samples,) in the type of the file: float32, int16,\n"
            "int32, uint16, uint32 or uint8. Not copied, cannot be written, and stays valid on its own.")
        .def_property_readonly(
            "scaled", ScaledOf,
            "Values in the signal's unit, a new numpy array of shape (samples,), float64.\n\n"
            "Each is (recorded value + unit_offset) * unit_factor, rounded to 32 bits as the program does.");
    module.def("fill_scaled", FillScaled, py::arg("signals"), py::arg("table").noconvert());
}

} // namespace Tracelyn
