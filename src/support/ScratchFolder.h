// Temporary files that nobody else can prepare, read or meet: a private folder for each user, and in it a
// folder for each object of a running process that needs one.
#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace support {

// The folder for this user's temporary files. Absolute, ends with a separator, exists. On Windows the user's
// own temporary folder; elsewhere "tracelyn-<uid>" below $TMPDIR or /tmp, made with mode 0700 when missing.
// Nothing when it cannot be made or when what is there cannot be trusted: a symbolic link, no folder, another
// owner, or rights for anyone else.
std::optional<QString> PrivateTemporaryFolder();

// Removes that folder if nothing is in it. Does nothing on Windows.
void RemoveEmptyTemporaryFolder();

// Marks a folder as in use: an open and locked file in it. The system releases the lock when the process
// ends, however it ends. (A process id would not do: it may be used again, and means nothing to another
// container.)
class CFolderLock {
public:
    // Null when somebody else holds the lock or when the folder is gone or takes no file.
    static std::unique_ptr<CFolderLock> Take(const QString& folder);
    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;
    ~CFolderLock();

private:
#ifdef _WIN32
    using Handle = void*;
#else
    using Handle = int;
#endif
    explicit CFolderLock(Handle file) : m_File(file) {}

    Handle m_File;
};

// A folder in the private temporary folder that lives as long as this object. Its name is its own, so that
// programs that run at the same time never meet in it. When a killed process leaves its folder behind, the
// next CScratchFolder or call of RemoveStale removes it.
class CScratchFolder {
public:
    CScratchFolder();
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;
    // Removes the folder with all that is in it.
    ~CScratchFolder();

    // False when the private temporary folder cannot be trusted or nothing can be made in it.
    bool IsValid() const { return m_pLock != nullptr; }
    // Absolute, ends with a separator. The name "lock" in it is taken.
    const QString& GetPath() const { return m_strPath; }

    // Removes the folders of this user's processes that ended without doing so.
    static void RemoveStale();

private:
    QString m_strPath;
    std::unique_ptr<CFolderLock> m_pLock;
};

} // namespace support
