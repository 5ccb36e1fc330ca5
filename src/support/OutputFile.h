// Writing files so that nothing is lost: a file appears whole or not at all.
#pragma once

#include "support/Progress.h"

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <memory>
#include <string_view>

class QIODevice;
class QTemporaryFile;

namespace support {

// Writes all bytes, in several steps if the device takes fewer at once. On false the device's errorString()
// gives the reason.
bool WriteAll(QIODevice& device, std::string_view bytes);

// An output that replaces what has its name. It is written to a file beside that one, which Commit puts in
// its place; without Commit nothing changes. A killed program leaves nothing behind where the file system
// knows files without a name. Devices and pipes are written directly. A link is followed, and a replaced file
// passes its permissions on.
class COutputFile {
public:
    explicit COutputFile(const QString& path);

    // False when no file can be made beside the one to replace, even if that one could be written over: a
    // failure would then lose both the old contents and the new. On Windows also for a name that belongs to a
    // device which takes no files.
    bool IsOpen() const { return m_pDevice->isOpen(); }
    // Unbuffered. Can seek unless it is a device or a pipe.
    QFileDevice& GetDevice() { return *m_pDevice; }
    // Lets the system begin to put on the disk what was written so far, where it can: Commit, which waits for
    // that, then takes less time. To be called now and then while much is written.
    void BeginSync();
    // Writes these bytes and puts the file in its place; false when it was not opened or any write failed.
    bool CommitWith(const QByteArray& bytes);
    // Puts the file in its place; false when any write failed.
    bool Commit();
    QString GetErrorText() const;

private:
    std::unique_ptr<QFileDevice> m_pDevice;
    QString m_strRefusal; // why nothing was opened, if that is not the device's error
};

// Whether Windows takes the name of a file for one of its devices, in whatever folder the file is: "con",
// "COM1.txt", "nul .xml" (whatever follows the first dot).
bool IsDeviceName(const QString& name);

// Whether both names lead to one file, be it through links or another spelling. False when either leads
// nowhere.
bool IsSameFile(const QString& one, const QString& other);

// Copies a file with its permissions to a name that nothing has yet. `to` appears when the copy is complete,
// and never replaces anything. False, and nothing is left behind, when something has that name, even if
// another process made it a moment ago, when anything fails, or when the progress asks to stop.
bool CopyToNewFile(const QString& from, const QString& to, const Progress& progress = {});

// The steps by which CopyToNewFile gives the finished file its name, in the order in which it tries them. The
// file system decides which of them work.
enum class Placing { Done, NameExists, Unsupported };
Placing PlaceByLink(QTemporaryFile& file, const QString& to);
Placing PlaceByRename(QTemporaryFile& file, const QString& to);
// The last resort: the name is there while the file grows, so a process that is killed then leaves a part.
Placing PlaceByCopy(QTemporaryFile& file, const QString& to);

} // namespace support
