// A mark on a folder that says whether its owner lives: the system takes it back when the process ends,
// however it ends. No process ids, which may be used again or mean nothing to another container.
#pragma once

#include <QString>

#include <memory>

namespace support {

// Holds an open and locked file in the folder.
class FolderLock {
public:
    // Null when somebody else holds the lock or when the folder is gone or takes no file.
    static std::unique_ptr<FolderLock> Take(const QString& folder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

private:
#ifdef _WIN32
    using Handle = void*;
#else
    using Handle = int;
#endif
    explicit FolderLock(Handle file) : m_File(file) {}

    Handle m_File;
};

} // namespace support
