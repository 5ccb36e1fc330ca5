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
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace support {

namespace {

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

#ifdef _WIN32

// Lets a path have more than 260 characters.
const QString kPrefix = QStringLiteral("\\\\?\\");

QString LongPath(const QString& path) {
    const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    if (absolute.startsWith(kPrefix))
        return absolute;
    return absolute.startsWith(u"\\\\") ? kPrefix + QStringLiteral("UNC\\") + absolute.mid(2)
                                        : kPrefix + absolute;
}

// What tells one file of the machine from another. (std::filesystem asks the C library, which knows no long
// paths.)
std::optional<BY_HANDLE_FILE_INFORMATION> Identify(const QString& path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = ::CreateFileW(LongPath(path).toStdWString().c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return std::nullopt;
    BY_HANDLE_FILE_INFORMATION found{};
    const bool isKnown = ::GetFileInformationByHandle(file, &found) != 0;
    ::CloseHandle(file);
    return isKnown ? std::optional(found) : std::nullopt;
}

#else

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

#ifdef _WIN32

// The devices that take a table; nothing for any other name.
std::optional<QString> DevicePath(const QString& path) {
    static const QStringList outputs{QStringLiteral("NUL"), QStringLiteral("CON"), QStringLiteral("CONOUT$")};
    const QString name = QFileInfo(path).fileName().toUpper();
    return outputs.contains(name) ? std::optional(QStringLiteral("\\\\.\\") + name) : std::nullopt;
}

// The toolkit would make a file of that name, which other programs could neither open nor remove.
bool IsRefused(const QString& path) {
    return IsDeviceName(QFileInfo(path).fileName());
}

// The path as the toolkit makes files by it: it puts the system's prefix before long paths itself, and takes
// none that has it.
QString FilePath(const QString& path) {
    const QString networkPrefix = kPrefix + QStringLiteral("UNC\\");
    if (path.startsWith(networkPrefix, Qt::CaseInsensitive))
        return QStringLiteral("\\\\") + path.mid(networkPrefix.size());
    return path.startsWith(kPrefix) ? path.mid(kPrefix.size()) : path;
}

#else

std::optional<QString> DevicePath(const QString& path) {
    const QFileInfo existing(path);
    const bool isDevice = existing.exists() && !existing.isFile() && !existing.isDir();
    return isDevice ? std::optional(path) : std::nullopt;
}

bool IsRefused(const QString& /*path*/) {
    return false;
}

QString FilePath(const QString& path) {
    return path;
}

#endif

} // namespace

COutputFile::COutputFile(const QString& path) {
    const auto devicePath = DevicePath(path);
    if (devicePath)
        m_pDevice = std::make_unique<QFile>(*devicePath);
    else
        m_pDevice = std::make_unique<QSaveFile>(FilePath(path));
    if (!devicePath && IsRefused(path))
        m_strRefusal = QStringLiteral("the name belongs to a device");
    else
        m_pDevice->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

QString COutputFile::GetErrorText() const {
    return m_strRefusal.isEmpty() ? m_pDevice->errorString() : m_strRefusal;
}

void COutputFile::BeginSync() {
#ifdef __linux__
    // Only a hint: Commit sees every error.
    static_cast<void>(::sync_file_range(m_pDevice->handle(), 0, 0, SYNC_FILE_RANGE_WRITE));
#endif
}

bool COutputFile::CommitWith(const QByteArray& bytes) {
    return IsOpen() && WriteAll(GetDevice(), {bytes.data(), static_cast<size_t>(bytes.size())}) && Commit();
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
        CopyContents(source, target)) {
        MakeRemovable(file);
        return Placing::Done;
    }
    MakeRemovable(target);
    target.remove();
    return Placing::Unsupported;
}

#ifdef _WIN32

bool IsSameFile(const QString& one, const QString& other) {
    const auto first = Identify(one);
    const auto second = Identify(other);
    return first && second && first->dwVolumeSerialNumber == second->dwVolumeSerialNumber &&
           first->nFileIndexHigh == second->nFileIndexHigh && first->nFileIndexLow == second->nFileIndexLow;
}

#else

bool IsSameFile(const QString& one, const QString& other) {
    std::error_code error;
    return std::filesystem::equivalent(QFile::encodeName(one).toStdString(),
                                       QFile::encodeName(other).toStdString(), error);
}

#endif

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
    if (to.isEmpty() || IsRefused(to) || target.exists() || target.isSymLink())
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
