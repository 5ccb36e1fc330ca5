#include "app/DroppedFiles.h"

#include "app/FileSetDescriptor.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

namespace Tracelyn {

namespace {

bool IsRecording(const QString& path) {
    static const QStringList kExtensions{QStringLiteral("paf"), QStringLiteral("xml")};
    const QFileInfo file(path);
    return kExtensions.contains(file.suffix(), Qt::CaseInsensitive) && file.isFile();
}

} // namespace

std::optional<QString> RecordingAmong(const QMimeData& dropped) {
    QStringList recordings;
    for (const QUrl& url : dropped.urls()) {
        if (url.isLocalFile() && IsRecording(url.toLocalFile()))
            recordings.append(QDir::toNativeSeparators(url.toLocalFile()));
    }
    if (recordings.isEmpty())
        return std::nullopt;
    return CFileSetDescriptor::LowestOfSet(recordings);
}

} // namespace Tracelyn
