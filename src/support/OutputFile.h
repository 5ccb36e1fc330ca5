// Writing files so that nothing is lost: an output appears whole or not at all.
#pragma once

#include <QFileDevice>
#include <QString>

#include <memory>
#include <string_view>

class QIODevice;

namespace support {

// Tries again after a short write, so that the device knows the reason when this is false.
bool WriteAll(QIODevice& device, std::string_view bytes);

// A file that is written beside its place and put there by Commit; without Commit what stands there stays. A
// killed program leaves nothing behind where the file system knows files without a name. Devices and pipes
// are written directly. A link is followed, and permissions of a replaced file are kept.
class OutputFile {
public:
    explicit OutputFile(const QString& path);

    // False also when the file itself could be written but nothing new beside it: writing over it could lose
    // both the old contents and the new.
    bool IsOpen() const { return m_pDevice->isOpen(); }
    // Unbuffered. Seeks unless it is a device or a pipe.
    QFileDevice& Device() { return *m_pDevice; }
    // Puts the file in its place; false when any write failed.
    bool Commit();
    QString ErrorText() const { return m_pDevice->errorString(); }

private:
    std::unique_ptr<QFileDevice> m_pDevice;
};

} // namespace support
