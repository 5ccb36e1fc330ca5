#include "zip.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QSaveFile>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
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
constexpr qsizetype kNameLimit = 260;
constexpr uint64_t kLargest = std::numeric_limits<uint32_t>::max();

// What an entry's extra field keeps of its zlib stream.
constexpr size_t kStreamHead = 2;
constexpr size_t kStreamTail = 4;
constexpr uint16_t kExtraLength = kStreamHead + kStreamTail;

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

// Memory for file contents. Running out of it is a failure like any other here, so it does not throw.
class Buffer {
public:
    explicit Buffer(size_t size) : m_pBytes(new (std::nothrow) Bytef[size]), m_nSize(m_pBytes ? size : 0) {}

    bool IsNull() const { return m_pBytes == nullptr; }
    Bytef* Data() const { return m_pBytes.get(); }
    size_t Size() const { return m_nSize; }
    std::span<char> Chars() const { return {reinterpret_cast<char*>(m_pBytes.get()), m_nSize}; }

private:
    std::unique_ptr<Bytef[]> m_pBytes;
    size_t m_nSize;
};

bool Write(QIODevice& device, std::span<const char> bytes) {
    const auto size = static_cast<qint64>(bytes.size());
    return device.write(bytes.data(), size) == size;
}

bool Read(QIODevice& device, std::span<char> bytes) {
    const auto size = static_cast<qint64>(bytes.size());
    return device.read(bytes.data(), size) == size;
}

uint32_t Crc(const Buffer& data) {
    return static_cast<uint32_t>(crc32_z(crc32(0, nullptr, 0), data.Data(), data.Size()));
}

// The name as the archive stores it; nothing when it cannot.
std::optional<QByteArray> StoredName(const CZip::TZIPFILEINFO& file) {
    const QString name = file.useFolder ? file.folder + file.name : file.name;
    QByteArray bytes = name.toLatin1();
    if (bytes.size() >= kNameLimit || QString::fromLatin1(bytes) != name)
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

// The whole zlib stream of a buffer; nothing when it does not fit into memory or into the archive's fields.
std::optional<Buffer> Compress(const Buffer& data, size_t& streamSize) {
    const uLong bound = compressBound(static_cast<uLong>(data.Size()));
    if (bound < data.Size())
        return std::nullopt;
    Buffer stream(bound);
    uLongf size = bound;
    if (stream.IsNull() || compress2(stream.Data(), &size, data.Data(), static_cast<uLong>(data.Size()),
                                     Z_BEST_COMPRESSION) != Z_OK)
        return std::nullopt;
    streamSize = size;
    return stream;
}

// Whether a stored name, its separators already turned into slashes, stays below the folder it is joined to.
bool StaysBelowTarget(const QString& name) {
    const bool hasDriveOrStream = name.contains(u':');
    return !name.isEmpty() && !name.startsWith(u'/') && !name.contains(QLatin1String("..")) &&
           !hasDriveOrStream && !name.contains(QChar::Null);
}

bool IsAbsolute(const QString& path) {
#ifdef Q_OS_WIN
    return path.size() >= 3 && path[1] == u':' && path[2] == u'/';
#else
    return path.startsWith(u'/');
#endif
}

// Where an entry goes, its folders created; nothing when it must not or cannot go there.
std::optional<QString> PrepareOutputPath(const QString& targetFolder, const QByteArray& storedName) {
    const QString name = QString::fromLatin1(storedName).replace(u'\\', u'/');
    const QString path = QDir::fromNativeSeparators(targetFolder) + name;
    if (!StaysBelowTarget(name) || !IsAbsolute(path))
        return std::nullopt;
    if (!QDir().mkpath(path.left(path.lastIndexOf(u'/') + 1)))
        return std::nullopt;
    return path;
}

// One entry as its local header and name announce it; the archive stands at the compressed data.
struct Entry {
    QByteArray name;
    std::array<char, kExtraLength> streamEnds{};
    uint32_t crc = 0;
    uint32_t compressedSize = 0;
    uint32_t uncompressedSize = 0;
};

// Nothing when the header is not one of ours or promises more than the rest of the file can hold.
std::optional<Entry> ReadEntry(QFile& archive, const LocalHeader& header) {
    const bool ours = header.Get32(0) == kLocalSignature && header.Get16(4) == kVersion &&
                      header.Get16(6) == 0 && header.Get16(28) == kExtraLength;
    if (!ours || header.Get16(26) >= kNameLimit)
        return std::nullopt;
    Entry entry;
    entry.name.resize(header.Get16(26));
    entry.crc = header.Get32(14);
    entry.compressedSize = header.Get32(18);
    entry.uncompressedSize = header.Get32(22);
    if (!Read(archive, {entry.name.data(), static_cast<size_t>(entry.name.size())}) ||
        !Read(archive, entry.streamEnds) || entry.compressedSize > archive.size() - archive.pos())
        return std::nullopt;
    return entry;
}

// The verified contents; nothing when they are damaged.
std::optional<Buffer> ReadContents(QFile& archive, const Entry& entry) {
    // Deflate cannot do better than 1032 to 1: a larger promise is a lie that need not cost memory.
    if (entry.uncompressedSize > uint64_t{1032} * entry.compressedSize + 1024)
        return std::nullopt;
    Buffer stream(size_t{entry.compressedSize} + kExtraLength);
    Buffer data(entry.uncompressedSize);
    if (stream.IsNull() || data.IsNull())
        return std::nullopt;
    const std::span<char> bytes = stream.Chars();
    std::copy_n(entry.streamEnds.data(), kStreamHead, bytes.data());
    std::copy_n(entry.streamEnds.data() + kStreamHead, kStreamTail, bytes.last(kStreamTail).data());
    if (!Read(archive, bytes.subspan(kStreamHead, entry.compressedSize)))
        return std::nullopt;
    auto size = static_cast<uLongf>(data.Size());
    if (uncompress(data.Data(), &size, stream.Data(), static_cast<uLong>(stream.Size())) != Z_OK ||
        size != data.Size() || Crc(data) != entry.crc)
        return std::nullopt;
    return data;
}

} // namespace

void CZip::AddFile(const QString& folder, const QString& name, bool useFolder, bool required) {
    TZIPFILEINFO& file = m_Files.emplace_back();
    file.folder = folder;
    file.name = name;
    file.useFolder = useFolder;
    file.required = required;
}

bool CZip::Pack() {
    const auto storable = [](const TZIPFILEINFO& file) { return StoredName(file).has_value(); };
    if (m_Files.size() > std::numeric_limits<uint16_t>::max() || !std::ranges::all_of(m_Files, storable))
        return false;
    QSaveFile archive(m_strArchivePath);
    if (!archive.open(QIODevice::WriteOnly))
        return false;
    for (TZIPFILEINFO& file : m_Files) {
        if (!PackFile(file, archive))
            return false;
    }
    return WriteDirectory(archive) && archive.commit();
}

bool CZip::PackFile(TZIPFILEINFO& file, QIODevice& archive) const {
    QFile source(m_strBaseFolder + file.folder + file.name);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return !file.required;
    if (source.isSequential() || static_cast<uint64_t>(source.size()) > kLargest)
        return false;
    Buffer data(static_cast<size_t>(source.size()));
    if (data.IsNull() || !Read(source, data.Chars()))
        return false;
    size_t streamSize = 0;
    const std::optional<Buffer> stream = Compress(data, streamSize);
    const auto offset = static_cast<uint64_t>(archive.pos());
    if (!stream || streamSize > kLargest || offset > kLargest)
        return false;
    const std::span<const char> bytes = stream->Chars().first(streamSize);

    file.crc = Crc(data);
    file.uncompressedSize = static_cast<uint32_t>(data.Size());
    file.compressedSize = static_cast<uint32_t>(streamSize - kExtraLength);
    file.method = kDeflate;
    file.offset = static_cast<uint32_t>(offset);
    const QByteArray name = StoredName(file).value_or(QByteArray());
    return Write(archive, MakeLocalHeader(file, static_cast<uint16_t>(name.size())).bytes) &&
           Write(archive, name) && Write(archive, bytes.first(kStreamHead)) &&
           Write(archive, bytes.last(kStreamTail)) &&
           Write(archive, bytes.subspan(kStreamHead, file.compressedSize));
}

// A skipped file is listed too, with what its record holds.
bool CZip::WriteDirectory(QIODevice& archive) const {
    if (m_Files.empty())
        return true;
    const qint64 start = archive.pos();
    for (const TZIPFILEINFO& file : m_Files) {
        const QByteArray name = StoredName(file).value_or(QByteArray());
        if (!Write(archive, MakeDirectoryHeader(file, static_cast<uint16_t>(name.size())).bytes) ||
            !Write(archive, name))
            return false;
    }
    if (static_cast<uint64_t>(archive.pos()) > kLargest)
        return false;
    EndRecord end;
    end.Put32(0, kEndSignature);
    end.Put16(8, static_cast<uint16_t>(m_Files.size()));
    end.Put16(10, static_cast<uint16_t>(m_Files.size()));
    end.Put32(12, static_cast<uint32_t>(archive.pos() - start));
    end.Put32(16, static_cast<uint32_t>(start));
    return Write(archive, end.bytes);
}

bool CZip::Expand(const QString& targetFolder, const QString& entryName) const {
    QFile archive(m_strArchivePath);
    if (!archive.open(QIODevice::ReadOnly))
        return false;
    std::vector<QString> written;
    if (ExpandEntries(archive, targetFolder, entryName, written))
        return true;
    for (const QString& path : written)
        QFile::remove(path);
    return false;
}

// `written` takes every path that was opened for writing, also one whose writing failed.
bool CZip::ExpandEntries(QFile& archive, const QString& targetFolder, const QString& entryName,
                         std::vector<QString>& written) {
    for (;;) {
        LocalHeader header;
        if (!Read(archive, header.bytes))
            return false;
        if (header.Get32(0) == kDirectorySignature)
            return true;
        const std::optional<Entry> entry = ReadEntry(archive, header);
        if (!entry)
            return false;
        if (!entryName.isEmpty() && QString::fromLatin1(entry->name) != entryName) {
            if (!archive.seek(archive.pos() + entry->compressedSize))
                return false;
            continue;
        }
        const std::optional<Buffer> data = ReadContents(archive, *entry);
        const std::optional<QString> path =
            data ? PrepareOutputPath(targetFolder, entry->name) : std::nullopt;
        if (!path)
            return false;
        QFile output(*path);
        if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
            return false;
        written.push_back(*path);
        if (!Write(output, data->Chars()))
            return false;
        if (!entryName.isEmpty())
            return true;
    }
}

} // namespace Tracelyn
