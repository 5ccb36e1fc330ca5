#include "support/OutputFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>
#include <QTemporaryFile>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#ifdef _WIN32
#include <io.h>
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
    // The prefix allows more than 260 characters.
    const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    const QString prefix = QStringLiteral("\\\\?\\");
    return (absolute.startsWith(u"\\\\") ? absolute : prefix + absolute).toStdWString();
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

// Some systems remove no file that is read-only.
void MakeRemovable(QFile& file) {
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

// Puts the contents on the disk. Called before the file gets its name, so that a crash of the system never
// leaves the name with only a part of the contents.
bool Sync(QFile& file) {
#ifdef _WIN32
    return file.flush() && ::_commit(file.handle()) == 0;
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

bool IsDeviceName(const QString& name) {
    static const QStringList devices{
        QStringLiteral("CON"),    QStringLiteral("PRN"),     QStringLiteral("AUX"),   QStringLiteral("NUL"),
        QStringLiteral("CONIN$"), QStringLiteral("CONOUT$"), QStringLiteral("CLOCK$")};
    const QString stem = name.section(u'.', 0, 0).trimmed().toUpper();
    const bool isPort = stem.size() == 4 &&
                        (stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT"))) &&
                        QStringLiteral("0123456789\u00b9\u00b2\u00b3").contains(stem.back());
    return isPort || devices.contains(stem);
}

namespace {

// The name by which to open the device or pipe that the path leads to; nothing when it leads to a file or
// nowhere.
std::optional<QString> DevicePath(const QString& path) {
#ifdef _WIN32
    // The toolkit would make a file of that name in the current folder.
    if (IsDeviceName(path))
        return QStringLiteral("\\\\.\\") + path.section(u'.', 0, 0).trimmed();
#endif
    const QFileInfo existing(path);
    const bool isDevice = existing.exists() && !existing.isFile() && !existing.isDir();
    return isDevice ? std::optional(path) : std::nullopt;
}

// The path as the toolkit makes files by it: it puts the prefix of Windows before long paths itself, and
// takes none that has it.
QString WithoutPrefix(const QString& path) {
#ifdef _WIN32
    const QString prefix = QStringLiteral("\\\\?\\");
    const QString networkPrefix = prefix + QStringLiteral("UNC\\");
    if (path.startsWith(networkPrefix, Qt::CaseInsensitive))
        return QStringLiteral("\\\\") + path.mid(networkPrefix.size());
    if (path.startsWith(prefix))
        return path.mid(prefix.size());
#endif
    return path;
}

} // namespace

COutputFile::COutputFile(const QString& path) {
    if (const auto devicePath = DevicePath(path))
        m_pDevice = std::make_unique<QFile>(*devicePath);
    else
        m_pDevice = std::make_unique<QSaveFile>(WithoutPrefix(path));
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
    // An open file cannot be moved, and only the toolkit's own call really closes this one.
    if (file.rename(to)) {
        file.setAutoRemove(false);
        return Placing::Done;
    }
    return QFileInfo::exists(to) ? Placing::NameExists : Placing::Unsupported;
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
    // To open a temporary file again would make another one.
    QFile named(file.fileName());
    QFile& source = file.isOpen() ? file : named;
    if ((source.isOpen() || source.open(QIODevice::ReadOnly)) && source.seek(0) &&
        CopyContents(source, target))
        return Placing::Done;
    MakeRemovable(target);
    target.remove();
    return Placing::Unsupported;
}

bool IsSameFile(const QString& one, const QString& other) {
    std::error_code error;
    return std::filesystem::equivalent(ToFilePath(one), ToFilePath(other), error);
}

namespace {

// Gives the finished file its name in the first way that the file system allows.
bool Place(QTemporaryFile& file, const QString& to) {
    for (const auto place : {PlaceByLink, PlaceByRename, PlaceByCopy}) {
        const Placing placing = place(file, to);
        if (placing != Placing::Unsupported)
            return placing == Placing::Done;
    }
    return false;
}

} // namespace

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
    const bool isPlaced = Sync(copy) && Place(copy, to);
    if (!isPlaced)
        MakeRemovable(copy);
    return isPlaced;
}

} // namespace support
