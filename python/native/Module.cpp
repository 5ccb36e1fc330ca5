// tracelyn._native: what the Python package is made of. The package checks what its users give it.
#include "native/Conversion.h"
#include "native/LoadedRecording.h"
#include "native/Signal.h"

#include "reader/SignalFileReader.h"
#include "support/Limits.h"
#include "support/ScratchFolder.h"

#include <string>

namespace py = pybind11;

PYBIND11_MODULE(_native, module) {
    py::options options;
    options.disable_function_signatures(); // help() is read by people who know no C++
    module.doc() = "The compiled part of tracelyn; use the package.";
    module.attr("VERSION") = TRACELYN_VERSION;
    module.attr("LARGEST_SIDE") = support::limits::kMaxPictureSidePixels;
    module.def(
        "level_granted_by",
        [](const std::string& code) { return Tracelyn::LevelGrantedBy(Tracelyn::FromPython(code)); },
        py::arg("code"));
    module.def("remove_empty_temporary_folder", support::RemoveEmptyTemporaryFolder);
    Tracelyn::AddSignal(module);
    Tracelyn::AddRecording(module);
}
