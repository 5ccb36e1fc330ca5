// Which of the files that are dropped on the window is opened.
#pragma once

#include <QString>

#include <optional>

class QMimeData;

namespace Tracelyn {

// The first recording, or the one with the lowest number when others of its measurement set are dropped with
// it. Recordings are files, and links to files, with one of the two extensions in any case. None when nothing
// else is dropped.
std::optional<QString> RecordingAmong(const QMimeData& dropped);

} // namespace Tracelyn
