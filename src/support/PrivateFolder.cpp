#include "support/PrivateFolder.h"

#include <QDir>

#ifndef _WIN32
#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace support {

#ifdef _WIN32

std::optional<QString> PrivateTemporaryFolder() {
    return QDir::toNativeSeparators(QDir(QDir::tempPath()).absolutePath() + u'/');
}

#else

namespace {

// Looks at the path itself, not at what a symbolic link there points to.
bool IsPrivateFolder(const char* path) {
    struct stat status = {};
    return ::lstat(path, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

} // namespace

std::optional<QString> PrivateTemporaryFolder() {
    // Not QDir::tempPath: for a folder that does not exist it gives the current one.
    const QString given = qEnvironmentVariable("TMPDIR");
    const QDir parent(QDir(given.isEmpty() ? QStringLiteral("/tmp") : given).absolutePath());
    const QString path = parent.filePath(QStringLiteral("tracelyn-%1").arg(::geteuid()));
    const QByteArray encoded = QFile::encodeName(path);
    if (::mkdir(encoded.constData(), S_IRWXU) != 0 && errno != EEXIST)
        return std::nullopt;
    if (!IsPrivateFolder(encoded.constData()))
        return std::nullopt;
    return path + u'/';
}

#endif

} // namespace support
