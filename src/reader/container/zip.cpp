#include "reader/container/zip.h"

#include "reader/container/EntryPath.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QSaveFile>
#include <QStorageInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <new>
#include <optional>
#include <span>

namespace Tracelyn {

namespace {

constexpr uint32_t kLocalSignature = 0x04034B50;
constexpr uint32_t kDirectorySignature = 0x02014B50;
constexpr uint32_t kEndSignature = 0x06054B50;
constexpr uint16_t kVersion = 1;
constexpr uint16_t kDeflate = 8;
constexpr uint16_t kExtraLength = kStreamHead + kStreamTail;
constexpr qsizetype kMaxNameBytes = 259;
constexpr uint64_t kMaxBytes = std::numeric_limits<uint32_t>::max();

// A header of N bytes whose little-endian fields are named by their offset; what nobody sets is zero.
template <size_t N>
struct Header {
    std::array<char, N> bytes{};

    void Put16(size_t offset, uint16_t value) { qToLittleEndian(value, bytes.data() + offset); }
    void Put32(size_t offset, uint32_t value) { qToLittleEndian(value, bytes.data() + offset); }
    uint16_t Get16(size_t offset) const { return qFromLittleEndian<uint16_t>(bytes.data() + offset); }
    uint32_t Get32(size_t offset) const { return qFromLittleEndian<uint32_t>(bytes.data() + offset); }
};

using LocalHeader = Header<30>;
using DirectoryHeader = Header<46>;
using EndRecord = Header<22>;

// The name as the archive stores it; nothing when it cannot.
std::optional<QByteArray> StoredName(const CZip::TZIPFILEINFO& file) {
    const QString name = file.useFolder ? file.folder + file.name : file.name;
    QByteArray bytes = name.toLatin1();
    if (bytes.size() > kMaxNameBytes || QString::fromLatin1(bytes) != name)
        return std::nullopt;
    return bytes;
}

LocalHeader MakeLocalHeader(const CZip::TZIPFILEINFO& file, uint16_t nameLength) {
    LocalHeader header;
    header.Put32(0, kLocalSignature);
    header.Put16(4, kVersion);
    header.Put16(8, kDeflate);
    header.Put32(14, file.crc);
    header.Put32(18, file.compressedSize);
    header.Put32(22, file.uncompressedSize);
    header.Put16(26, nameLength);
    header.Put16(28, kExtraLength);
    return header;
}

DirectoryHeader MakeDirectoryHeader(const CZip::TZIPFILEINFO& file, uint16_t nameLength) {
    DirectoryHeader header;
    header.Put32(0, kDirectorySignature);
    header.Put16(4, kVersion);
    header.Put16(6, kVersion);
    header.Put16(10, kDeflate);
    header.Put32(16, file.crc);
    header.Put32(20, file.compressedSize);
    header.Put32(24, file.uncompressedSize);
    header.Put16(28, nameLength);
    header.Put32(42, file.offset);
    return header;
}

// One entry as its local header and name announce it; the archive stands at the compressed data.
struct Entry {
    QByteArray name;
    DeflatedContents contents;
};

// Whether the file system of the folder has room for so many bytes, as far as it tells.
bool HasRoom(const QString& folder, uint32_t bytes) {
    const qint64 available = QStorageInfo(folder).bytesAvailable();
    return available < 0 || bytes <= available;
}

// Nothing when the header is not one of ours or announces more data than the archive has.
std::optional<Entry> ReadEntry(QFile& archive, const LocalHeader& header) {
    const bool ours = header.Get32(0) == kLocalSignature && header.Get16(4) == kVersion &&
                      header.Get16(6) == 0 && header.Get16(28) == kExtraLength;
    if (!ours || header.Get16(26) > kMaxNameBytes)
        return std::nullopt;
    Entry entry;
    entry.name.resize(header.Get16(26));
    entry.contents.crc = header.Get32(14);
    entry.contents.compressedSize = header.Get32(18);
    entry.contents.uncompressedSize = header.Get32(22);
    if (!ReadBytes(archive, {entry.name.data(), static_cast<size_t>(entry.name.size())}) ||
        !ReadBytes(archive, entry.contents.streamEnds) ||
        entry.contents.compressedSize > archive.size() - archive.pos())
        return std::nullopt;
    return entry;
}

// Files of a call that are to go unless it succeeds.
class CFilesBegun {
public:
    CFilesBegun() = default;
    CFilesBegun(const CFilesBegun&) = delete;
    CFilesBegun& operator=(const CFilesBegun&) = delete;
    ~CFilesBegun() {
        for (const QString& path : m_Paths)
            QFile::remove(path);
    }

    // Takes the place of whatever file or link stands there, and opens nothing that somebody else has made.
    bool Create(const QString& path, QFile& file) {
        QFile::remove(path);
        file.setFileName(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            return false;
        m_Paths.push_back(path);
        return true;
    }
    ExpandProblem Keep() {
        m_Paths.clear();
        return ExpandProblem::None;
    }

private:
    std::vector<QString> m_Paths;
};

} // namespace

void CZip::AddFile(const QString& folder, const QString& name, bool useFolder, bool required) {
    TZIPFILEINFO& file = m_Files.emplace_back();
    file.folder = folder;
    file.name = name;
    file.useFolder = useFolder;
    file.required = required;
}

void CZip::AddFileAs(const QString& path, const QString& name) {
    AddFile(QString(), name, false, true);
    m_Files.back().path = path;
}

bool CZip::Pack() {
    QSaveFile archive(m_strArchivePath);
    return archive.open(QIODevice::WriteOnly) && Pack(archive) && archive.commit();
}

bool CZip::Pack(QIODevice& archive, const support::Progress& progress) {
    if (!archive.isSequential())
        return PackFiles(archive, progress);
    try {
        QBuffer whole;
        return whole.open(QIODevice::WriteOnly) && PackFiles(whole, progress) &&
               WriteBytes(archive, whole.data());
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool CZip::PackFiles(QIODevice& archive, const support::Progress& progress) {
    const auto storable = [](const TZIPFILEINFO& file) { return StoredName(file).has_value(); };
    if (m_Files.size() > std::numeric_limits<uint16_t>::max() || !std::ranges::all_of(m_Files, storable))
        return false;
    for (TZIPFILEINFO& file : m_Files) {
        if (!PackFile(file, archive, progress))
            return false;
    }
    return WriteDirectory(archive);
}

// The header is written twice: to make room, and when everything it says is known.
bool CZip::PackFile(TZIPFILEINFO& file, QIODevice& archive, const support::Progress& progress) const {
    QFile source(file.path.isEmpty() ? m_strBaseFolder + file.folder + file.name : file.path);
    if (!QFileInfo(source).isFile() || !source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return !file.required;
    const qint64 offset = archive.pos();
    if (static_cast<uint64_t>(offset) > kMaxBytes)
        return false;
    const QByteArray name = StoredName(file).value_or(QByteArray());
    const auto writeHeader = [&](const DeflatedContents& contents) {
        return WriteBytes(archive, MakeLocalHeader(file, static_cast<uint16_t>(name.size())).bytes) &&
               WriteBytes(archive, name) && WriteBytes(archive, contents.streamEnds);
    };
    if (!writeHeader({}))
        return false;
    const std::optional<DeflatedContents> contents = Deflate(source, archive, progress);
    if (!contents)
        return false;
    file.crc = contents->crc;
    file.uncompressedSize = contents->uncompressedSize;
    file.compressedSize = contents->compressedSize;
    file.method = kDeflate;
    file.offset = static_cast<uint32_t>(offset);
    const qint64 end = archive.pos();
    return archive.seek(offset) && writeHeader(*contents) && archive.seek(end);
}

// A skipped file is listed too, with what its record holds.
bool CZip::WriteDirectory(QIODevice& archive) const {
    if (m_Files.empty())
        return true;
    const qint64 start = archive.pos();
    for (const TZIPFILEINFO& file : m_Files) {
        const QByteArray name = StoredName(file).value_or(QByteArray());
        if (!WriteBytes(archive, MakeDirectoryHeader(file, static_cast<uint16_t>(name.size())).bytes) ||
            !WriteBytes(archive, name))
            return false;
    }
    if (static_cast<uint64_t>(archive.pos()) > kMaxBytes)
        return false;
    EndRecord end;
    end.Put32(0, kEndSignature);
    end.Put16(8, static_cast<uint16_t>(m_Files.size()));
    end.Put16(10, static_cast<uint16_t>(m_Files.size()));
    end.Put32(12, static_cast<uint32_t>(archive.pos() - start));
    end.Put32(16, static_cast<uint32_t>(start));
    return WriteBytes(archive, end.bytes);
}

bool CZip::Expand(const QString& targetFolder, const QString& entryName, const support::Progress& progress) {
    m_Problem = ExpandEntries(targetFolder, entryName, progress);
    return m_Problem == ExpandProblem::None;
}

ExpandProblem CZip::ExpandEntries(const QString& targetFolder, const QString& entryName,
                                  const support::Progress& progress) const {
    QFile archive(m_strArchivePath);
    // To open a pipe would wait for somebody who writes into it.
    if (!QFileInfo(archive).isFile() || !archive.open(QIODevice::ReadOnly))
        return ExpandProblem::NotReadable;
    CFilesBegun files;
    for (;;) {
        LocalHeader header;
        if (!ReadBytes(archive, header.bytes))
            return ExpandProblem::Damaged;
        if (header.Get32(0) == kDirectorySignature)
            return files.Keep();
        const std::optional<Entry> entry = ReadEntry(archive, header);
        if (!entry)
            return ExpandProblem::Damaged;
        const qint64 next = archive.pos() + entry->contents.compressedSize;
        if (entryName.isEmpty() || QString::fromLatin1(entry->name) == entryName) {
            const std::optional<QString> path = PrepareEntryPath(targetFolder, entry->name);
            QFile output;
            if (!path || !files.Create(*path, output))
                return ExpandProblem::NotWritten;
            if (!HasRoom(targetFolder, entry->contents.uncompressedSize))
                return ExpandProblem::NoRoom;
            if (!Inflate(archive, entry->contents, output, progress))
                return output.error() == QFileDevice::NoError ? ExpandProblem::Damaged
                                                              : ExpandProblem::NotWritten;
            if (!entryName.isEmpty())
                return files.Keep();
        }
        if (!archive.seek(next))
            return ExpandProblem::Damaged;
    }
}

} // namespace Tracelyn
