#include "app/Icons.h"

#include <QFile>
#include <QString>

#include <initializer_list>

// The resources lie in a static library, from which the linker takes only what is named. The macro declares a
// function of the global namespace.
static void RegisterArtwork() {
    Q_INIT_RESOURCE(icons);
}

namespace Tracelyn {

QIcon LoadIcon(const QString& name) {
    RegisterArtwork();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QString file = QStringLiteral(":/icons/%1-%2.png").arg(name).arg(size);
        if (QFile::exists(file))
            icon.addFile(file);
    }
    return icon;
}

} // namespace Tracelyn
