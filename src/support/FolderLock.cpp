#include "support/FolderLock.h"

#include <QDir>

#ifdef _WIN32
#include <windows.h>
#else
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace support {

namespace {

QString LockPath(const QString& folder) {
    return QDir(folder).filePath(QStringLiteral("lock"));
}

} // namespace

#ifdef _WIN32

// Shared with nobody, and deleted by the system.
std::unique_ptr<FolderLock> FolderLock::Take(const QString& folder) {
    const std::wstring path = QDir::toNativeSeparators(LockPath(folder)).toStdWString();
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return file == INVALID_HANDLE_VALUE ? nullptr : std::unique_ptr<FolderLock>(new FolderLock(file));
}

FolderLock::~FolderLock() {
    ::CloseHandle(m_File);
}

#else

namespace {

// Whoever removes a folder holds its lock, so a lock that comes late may be that of a file that is gone.
bool IsAt(int file, const char* path) {
    struct stat opened = {};
    struct stat found = {};
    return ::fstat(file, &opened) == 0 && ::lstat(path, &found) == 0 && opened.st_dev == found.st_dev &&
           opened.st_ino == found.st_ino;
}

} // namespace

std::unique_ptr<FolderLock> FolderLock::Take(const QString& folder) {
    const QByteArray path = QFile::encodeName(LockPath(folder));
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return nullptr;
    std::unique_ptr<FolderLock> lock(new FolderLock(file));
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK)
            ::unlink(path.constData()); // nobody can have it here
        return nullptr;
    }
    if (!IsAt(file, path.constData()))
        return nullptr;
    return lock;
}

FolderLock::~FolderLock() {
    ::close(m_File);
}

#endif

} // namespace support
