#include "SharedFile.h"

namespace support {

std::shared_ptr<CSharedFile> CSharedFile::Open(const QString& path) {
    std::shared_ptr<CSharedFile> shared(new CSharedFile);
    shared->m_File.setFileName(path);
    if (!shared->m_File.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || shared->m_File.isSequential())
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
