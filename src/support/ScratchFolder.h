// A temporary folder that belongs to one object of one running process and goes with it.
#pragma once

#include "support/FolderLock.h"

#include <QString>

#include <memory>

namespace support {

// Lies in the private temporary folder under a name of its own, so that programs that run at the same time
// never meet in it. What a killed process leaves behind is removed by the next object or call of RemoveStale.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    // Removes the folder with all that is in it.
    ~ScratchFolder();

    // False when the private temporary folder cannot be trusted or nothing can be made in it.
    bool IsValid() const { return m_pLock != nullptr; }
    // Absolute, ends with a separator. "lock" is a name that is taken.
    const QString& GetPath() const { return m_strPath; }

    // Removes the folders of this user's processes that ended without doing so.
    static void RemoveStale();

private:
    QString m_strPath;
    std::unique_ptr<FolderLock> m_pLock;
};

} // namespace support
