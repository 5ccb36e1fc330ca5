// Long work for a Python program: other threads go on meanwhile, and Ctrl+C ends it.
#pragma once

#include "support/Progress.h"

#include <pybind11/pybind11.h>

#include <optional>
#include <type_traits>

namespace Tracelyn {

// Calls work(progress) without the interpreter's lock and returns what it returns. `progress` asks it to stop
// when a signal handler has raised something, such as KeyboardInterrupt; that is thrown then, in place of the
// result. Called with the lock; everything that other threads may use, too, is locked within `work`.
template <class Work>
auto CallUnlocked(Work work) {
    namespace py = pybind11;
    std::optional<py::error_already_set> raised;
    support::CPatience patience(support::CPatience::kBetween);
    const support::Progress progress = [&](double /*done*/) {
        if (!raised && patience.IsOver()) {
            const py::gil_scoped_acquire locked;
            if (PyErr_CheckSignals() != 0)
                raised.emplace();
        }
        return !raised;
    };
    const auto call = [&] {
        const py::gil_scoped_release unlocked;
        return work(progress);
    };
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        if (raised)
            throw py::error_already_set(*raised);
    } else {
        auto result = call();
        if (raised)
            throw py::error_already_set(*raised);
        return result;
    }
}

} // namespace Tracelyn
