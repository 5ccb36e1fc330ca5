#include "support/SharedFile.h"

#include <QFileInfo>

namespace support {

std::shared_ptr<CSharedFile> CSharedFile::Open(const QString& path) {
    std::shared_ptr<CSharedFile> shared(new CSharedFile);
    shared->m_File.setFileName(path);
    // To open a pipe would wait for somebody who writes into it.
    if (!QFileInfo(path).isFile() || !shared->m_File.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return nullptr;
    shared->m_nSize = shared->m_File.size();
    return shared;
}

bool CSharedFile::Read(int64_t at, std::span<char> bytes) {
    const std::lock_guard lock(m_Mutex);
    const auto size = static_cast<qint64>(bytes.size());
    return m_File.seek(at) && m_File.read(bytes.data(), size) == size;
}

} // namespace support
