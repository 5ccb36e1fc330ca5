#include "support/OutputFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>

#include <filesystem>
#include <system_error>

#include <algorithm>

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace support {

namespace {

std::filesystem::path ToFilePath(const QString& path) {
#ifdef _WIN32
    return QDir::toNativeSeparators(path).toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

bool CopyContents(QFile& source, QFile& target, const Progress& progress = {}) {
    constexpr qint64 kPiece = 1 << 20;
    const auto size = static_cast<double>(std::max<qint64>(source.size(), 1));
    for (;;) {
        if (!Report(progress, static_cast<double>(source.pos()) / size))
            return false;
        const QByteArray piece = source.read(kPiece);
        if (piece.isEmpty())
            return source.error() == QFileDevice::NoError;
        if (!WriteAll(target, {piece.data(), static_cast<size_t>(piece.size())}))
            return false;
    }
}

// Leaves out QFile's "User" permissions: they say what the current user may do, which for root is everything.
void CopyPermissions(const QFile& source, QFile& target) {
    target.setPermissions(source.permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser));
}

// Puts the contents on the disk. Called before the file gets its name, so that a crash of the system never
// leaves the name with only a part of the contents.
bool Sync(QFile& file) {
#ifdef _WIN32
    return file.flush();
#else
    return file.flush() && ::fdatasync(file.handle()) == 0;
#endif
}

#ifndef _WIN32

// Translates the result of a system call that should give a file its name: 0, or an error number in errno.
Placing OutcomeOf(int result) {
    if (result == 0)
        return Placing::Done;
    return errno == EEXIST ? Placing::NameExists : Placing::Unsupported;
}

#endif

} // namespace

bool WriteAll(QIODevice& device, std::string_view bytes) {
    while (!bytes.empty()) {
        const qint64 written = device.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

COutputFile::COutputFile(const QString& path) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile() && !existing.isDir())
        m_pDevice = std::make_unique<QFile>(path);
    else
        m_pDevice = std::make_unique<QSaveFile>(path);
    m_pDevice->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool COutputFile::Commit() {
    if (auto* const saved = dynamic_cast<QSaveFile*>(m_pDevice.get()))
        return saved->commit();
    m_pDevice->close();
    return m_pDevice->error() == QFileDevice::NoError;
}

#ifdef _WIN32

Placing PlaceByLink(QTemporaryFile&, const QString&) {
    return Placing::Unsupported;
}

Placing PlaceByRename(QTemporaryFile& file, const QString& to) {
    file.close(); // an open file cannot be moved
    if (::MoveFileExW(ToFilePath(file.fileName()).c_str(), ToFilePath(to).c_str(), MOVEFILE_WRITE_THROUGH) !=
        0)
        return Placing::Done;
    return ::GetLastError() == ERROR_ALREADY_EXISTS ? Placing::NameExists : Placing::Unsupported;
}

#else

// Links the open file: it has no other name to rename where the file system knows files without a name.
Placing PlaceByLink(QTemporaryFile& file, const QString& to) {
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(file.handle());
    return OutcomeOf(
        ::linkat(AT_FDCWD, open.constData(), AT_FDCWD, QFile::encodeName(to).constData(), AT_SYMLINK_FOLLOW));
}

Placing PlaceByRename(QTemporaryFile& file, const QString& to) {
    const QByteArray from = QFile::encodeName(file.fileName());
    return OutcomeOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, QFile::encodeName(to).constData(),
                                 RENAME_NOREPLACE));
}

#endif

Placing PlaceByCopy(QTemporaryFile& file, const QString& to) {
    QFile target(to);
    if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return QFileInfo::exists(to) ? Placing::NameExists : Placing::Unsupported;
    CopyPermissions(file, target);
    if ((file.isOpen() || file.open()) && file.seek(0) && CopyContents(file, target))
        return Placing::Done;
    target.remove();
    return Placing::Unsupported;
}

bool IsSameFile(const QString& one, const QString& other) {
    std::error_code error;
    return std::filesystem::equivalent(ToFilePath(one), ToFilePath(other), error);
}

bool CopyToNewFile(const QString& from, const QString& to, const Progress& progress) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || source.isSequential())
        return false;
    const QFileInfo target(to);
    if (to.isEmpty() || target.exists() || target.isSymLink())
        return false;
    QTemporaryFile copy(target.absoluteDir().filePath(QStringLiteral("tracelyn-XXXXXX")));
    if (!copy.open() || !CopyContents(source, copy, progress))
        return false;
    CopyPermissions(source, copy);
    if (!Sync(copy))
        return false;
    for (const auto place : {PlaceByLink, PlaceByRename, PlaceByCopy}) {
        const Placing placing = place(copy, to);
        if (placing != Placing::Unsupported)
            return placing == Placing::Done;
    }
    return false;
}

} // namespace support
