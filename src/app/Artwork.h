// The program's own icons.
#pragma once

#include <QIcon>

namespace Tracelyn {

// The icon of that name ("app", "open", "previous", "next", "fixed-cursor", "zoom-in", "zoom-out",
// "zoom-reset") with every size it was rendered in, so that no size in use has to be scaled. A picture is
// decoded when its size is asked for. An unknown name gives an empty icon.
QIcon LoadIcon(const QString& name);

} // namespace Tracelyn
