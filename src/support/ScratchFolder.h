// A temporary folder that belongs to one object of one running process and goes with it.
#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace support {

// Lies in the private temporary folder under a name of its own, so that programs that run at the same time
// never meet in it. A lock file beside it tells that its owner lives; what a killed process leaves behind is
// removed by the next object or call of RemoveStale.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    // Removes the folder with all that is in it.
    ~ScratchFolder();

    // False when the private temporary folder cannot be trusted or nothing can be made in it.
    bool IsValid() const { return !m_strPath.isEmpty(); }
    // Absolute, ends with a separator.
    const QString& GetPath() const { return m_strPath; }

    // Removes the folders of this user's processes that ended without doing so.
    static void RemoveStale();

private:
    std::unique_ptr<QLockFile> m_pLock;
    QString m_strPath;
};

} // namespace support
