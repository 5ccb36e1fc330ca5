// The container of a compressed analysis: a small archive of deflated files with a layout of its own. It
// looks like the common one but keeps each entry's zlib header and checksum in the extra field, and reads
// nothing else.
#pragma once

#include "reader/container/Deflate.h"

#include <QString>

#include <cstdint>
#include <vector>

class QIODevice;

namespace Tracelyn {

// Why an archive was not expanded.
enum class ExpandProblem {
    None,
    NotReadable, // no file, or one that cannot be opened
    Damaged,     // not one of our archives, cut off, changed, or left by a caller that asked to stop
    NotWritten,  // a target that cannot be written, or a name that leads elsewhere
    NoRoom,      // the disk has less room than the entry announces
};

// Packs listed files into the archive, or expands its entries. Every failure is a plain false and leaves no
// file that this call began; nothing throws. Folders are joined to names as they are given, so they end with
// a separator.
class CZip {
public:
    // One listed file. Pack fills in what it wrote.
    struct TZIPFILEINFO {
        QString folder;
        QString name;
        uint32_t crc = 0;
        uint32_t uncompressedSize = 0;
        uint32_t compressedSize = 0; // of the raw deflate data
        uint16_t method = 0;
        uint32_t offset = 0; // of the local header
        bool useFolder = false;
        bool required = false;
        QString path; // of the file to read, if it is another than base folder + folder + name
    };

    explicit CZip(const QString& archivePath = {}) : m_strArchivePath(archivePath) {}

    // The folder that the listed files lie below; empty at first.
    void SetBaseFolder(const QString& folder) { m_strBaseFolder = folder; }

    // Lists base folder + folder + name for packing. It is stored as folder + name or as the name alone, in
    // Latin-1 and below 260 bytes. A file that does not open fails the pack only when it is required.
    void AddFile(const QString& folder, const QString& name, bool useFolder, bool required);

    // Lists the file at that path, which is required, under another name.
    void AddFileAs(const QString& path, const QString& name);

    // Writes the archive; an existing one is replaced only by a complete one. Without listed files it is
    // empty.
    bool Pack();
    // The same into a device that is open and at its start. What is written when it fails is no archive.
    // Progress is that of one file; false, too, when it asks to stop.
    bool Pack(QIODevice& archive, const support::Progress& progress = {});

    // Writes the entry of that stored name, or every entry when the name is empty, to target folder + stored
    // name and creates missing folders. A file or link that is there is replaced. True when the archive has
    // no such entry. The target must be absolute (on Windows with a drive letter); stored names that could
    // leave it, also on another system, are refused, and so is an entry for which the disk has no room.
    // Progress is that of one entry; false, too, when it asks to stop.
    bool Expand(const QString& targetFolder, const QString& entryName,
                const support::Progress& progress = {});
    // Why the last call of Expand was false.
    ExpandProblem GetProblem() const { return m_Problem; }

private:
    bool PackFiles(QIODevice& archive, const support::Progress& progress);
    bool PackFile(TZIPFILEINFO& file, QIODevice& archive, const support::Progress& progress) const;
    bool WriteDirectory(QIODevice& archive) const;

    ExpandProblem ExpandEntries(const QString& targetFolder, const QString& entryName,
                                const support::Progress& progress) const;

    QString m_strArchivePath;
    QString m_strBaseFolder;
    std::vector<TZIPFILEINFO> m_Files;
    ExpandProblem m_Problem = ExpandProblem::None;
};

} // namespace Tracelyn
