// A file for reading that several threads use at once, each at a place of its own.
#pragma once

#include <QFile>
#include <QString>

#include <cstdint>
#include <memory>
#include <span>

namespace support {

class CSharedFile {
public:
    // Null when the file cannot be opened, and for what is no file, such as a pipe.
    static std::shared_ptr<CSharedFile> Open(const QString& path);

    CSharedFile(const CSharedFile&) = delete;
    CSharedFile& operator=(const CSharedFile&) = delete;
    ~CSharedFile() = default;

    // In bytes, when it was opened.
    int64_t GetSize() const { return m_nSize; }
    // Fills the whole span with the bytes from `at` on; false when the file has fewer or cannot be read.
    // Threads do not wait for each other.
    bool Read(int64_t at, std::span<char> bytes) const;

private:
    CSharedFile() = default;

    QFile m_File; // only keeps the file open; its own position is never used
    int m_nHandle = -1;
    int64_t m_nSize = 0;
};

} // namespace support
