#include "Scratch.h"

#include "FuzzInput.h"

#include <QFile>
#include <QTemporaryDir>

namespace Tracelyn {

const QString& ScratchFolder() {
    static const QTemporaryDir folder;
    static const QString path = folder.path() + u'/';
    Require(folder.isValid(), "the scratch folder can be made");
    return path;
}

void WriteFile(const QString& path, std::string_view bytes) {
    QFile file(path);
    const auto size = static_cast<qint64>(bytes.size());
    Require(file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered) &&
                file.write(bytes.data(), size) == size,
            "the scratch file can be written");
}

} // namespace Tracelyn
