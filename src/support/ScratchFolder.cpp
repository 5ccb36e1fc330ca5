#include "support/ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace support {

namespace {

const QString kPrefix = QStringLiteral("tracelyn-run-");

void RemoveFolder(const QString& path, std::unique_ptr<CFolderLock> lock) {
    QDir(path).removeRecursively();
    // Some systems keep a file that is open: there, the folder goes only after its lock.
    lock.reset();
    QDir().rmdir(path);
}

QString LockPath(const QString& folder) {
    return QDir(folder).filePath(QStringLiteral("lock"));
}

#ifndef _WIN32

QString PrivateFolderPath() {
    // Not QDir::tempPath: for a folder that does not exist it gives the current one.
    const QString given = qEnvironmentVariable("TMPDIR");
    const QDir parent(QDir(given.isEmpty() ? QStringLiteral("/tmp") : given).absolutePath());
    return parent.filePath(QStringLiteral("tracelyn-%1").arg(::geteuid()));
}

// A symbolic link is no private folder, wherever it leads.
bool IsPrivateFolder(const char* path) {
    struct stat status = {};
    return ::lstat(path, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// False when the path names another file than the open one, or none: another process has then removed the
// folder between the opening and the locking, and the lock keeps nobody out.
bool IsAt(int file, const char* path) {
    struct stat opened = {};
    struct stat found = {};
    return ::fstat(file, &opened) == 0 && ::lstat(path, &found) == 0 && opened.st_dev == found.st_dev &&
           opened.st_ino == found.st_ino;
}

#endif

} // namespace

#ifdef _WIN32

std::optional<QString> PrivateTemporaryFolder() {
    return QDir::toNativeSeparators(QDir(QDir::tempPath()).absolutePath() + u'/');
}

void RemoveEmptyTemporaryFolder() {}

// The system lets nobody else open the file, and deletes it when it is closed.
std::unique_ptr<CFolderLock> CFolderLock::Take(const QString& folder) {
    const std::wstring path = QDir::toNativeSeparators(LockPath(folder)).toStdWString();
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return file == INVALID_HANDLE_VALUE ? nullptr : std::unique_ptr<CFolderLock>(new CFolderLock(file));
}

CFolderLock::~CFolderLock() {
    ::CloseHandle(m_File);
}

#else

std::optional<QString> PrivateTemporaryFolder() {
    const QString path = PrivateFolderPath();
    const QByteArray encoded = QFile::encodeName(path);
    if (::mkdir(encoded.constData(), S_IRWXU) != 0 && errno != EEXIST)
        return std::nullopt;
    if (!IsPrivateFolder(encoded.constData()))
        return std::nullopt;
    return path + u'/';
}

void RemoveEmptyTemporaryFolder() {
    ::rmdir(QFile::encodeName(PrivateFolderPath()).constData());
}

std::unique_ptr<CFolderLock> CFolderLock::Take(const QString& folder) {
    const QByteArray path = QFile::encodeName(LockPath(folder));
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return nullptr;
    std::unique_ptr<CFolderLock> lock(new CFolderLock(file));
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK)
            ::unlink(path.constData()); // the file system has no locks, so the file is nobody else's
        return nullptr;
    }
    if (!IsAt(file, path.constData()))
        return nullptr;
    return lock;
}

CFolderLock::~CFolderLock() {
    ::close(m_File);
}

#endif

CScratchFolder::CScratchFolder() {
    RemoveStale();
    // Between its making and its locking, another process may take the folder for one without an owner and
    // remove it, or before that the empty folder around it.
    constexpr int kTries = 10;
    for (int i = 0; !m_pLock && i < kTries; ++i) {
        const auto parent = PrivateTemporaryFolder();
        if (!parent)
            return;
        m_strPath = *parent + kPrefix + QString::number(QRandomGenerator::system()->generate64(), 16) +
                    QDir::separator();
        if (!QDir().mkdir(m_strPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
            continue;
        m_pLock = CFolderLock::Take(m_strPath);
        if (!m_pLock)
            QDir().rmdir(m_strPath);
    }
}

CScratchFolder::~CScratchFolder() {
    if (m_pLock)
        RemoveFolder(m_strPath, std::move(m_pLock));
}

void CScratchFolder::RemoveStale() {
    const auto parent = PrivateTemporaryFolder();
    if (!parent)
        return;
    const QDir folder(*parent);
    const auto filter = QDir::Dirs | QDir::Hidden | QDir::NoSymLinks;
    for (const QString& name : folder.entryList(filter)) {
        if (!name.startsWith(kPrefix))
            continue;
        const QString path = folder.filePath(name);
        if (auto lock = CFolderLock::Take(path))
            RemoveFolder(path, std::move(lock));
    }
}

} // namespace support
