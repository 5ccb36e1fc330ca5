// The program's own artwork, carried in its resources.
#pragma once

#include <QIcon>

class QString;

namespace Tracelyn {

// The icon of that name ("app", "open", "previous", "next", "fixed-cursor", "zoom-in", "zoom-out",
// "zoom-reset") with every size it was rendered in, so that no size in use has to be scaled. An unknown name
// gives an empty icon.
QIcon LoadIcon(const QString& name);

} // namespace Tracelyn
