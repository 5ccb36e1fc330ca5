// The box in which a program with a window tells its user what stops it. A process of its own shows the box,
// since the one that fails may be out of memory, in the middle of painting, on a thread that may have no
// windows, or without an application object.
#pragma once

#include <QString>

#include <optional>

namespace support {

// The reporter of assertions for a program with a window: prints the text on the error output, shows it in a
// box and returns when the user has closed the box. Without a display the text is printed only. Any thread
// may report; boxes come one after the other.
void ReportInBox(const QString& text);

// What ReportInBox of another process wants to have shown. The main function asks before anything else; when
// there is a text, the process is here to show it, and does nothing else. Always empty on Windows, whose
// boxes need no toolkit.
std::optional<QString> FaultToShow();

} // namespace support
