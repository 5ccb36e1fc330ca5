#include "support/SharedFile.h"

#include <QFileInfo>

#include <cstddef>

#ifdef _WIN32
#include <windows.h>

#include <algorithm>
#include <io.h>
#else
#include <cerrno>
#include <unistd.h>
#endif

namespace support {

namespace {

// Reads some of the bytes from `at` on and returns how many; 0 at the end of the file, -1 for an error.
int64_t ReadSome(int handle, int64_t at, std::span<char> bytes) {
#ifdef _WIN32
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(at & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(at >> 32);
    constexpr size_t kMaxReadBytes = 1 << 30; // a call counts in 32 bits
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMaxReadBytes));
    DWORD count = 0;
    if (::ReadFile(reinterpret_cast<HANDLE>(_get_osfhandle(handle)), bytes.data(), size, &count, &place))
        return count;
    return ::GetLastError() == ERROR_HANDLE_EOF ? 0 : -1;
#else
    for (;;) {
        const ssize_t count = ::pread(handle, bytes.data(), bytes.size(), at);
        if (count >= 0 || errno != EINTR)
            return count;
    }
#endif
}

} // namespace

std::shared_ptr<CSharedFile> CSharedFile::Open(const QString& path) {
    std::shared_ptr<CSharedFile> shared(new CSharedFile);
    shared->m_File.setFileName(path);
    // To open a pipe would wait for somebody who writes into it.
    if (!QFileInfo(path).isFile() || !shared->m_File.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return nullptr;
    shared->m_nHandle = shared->m_File.handle();
    shared->m_nSize = shared->m_File.size();
    return shared;
}

bool CSharedFile::Read(int64_t at, std::span<char> bytes) const {
    while (!bytes.empty()) {
        const int64_t count = ReadSome(m_nHandle, at, bytes);
        if (count <= 0)
            return false;
        at += count;
        bytes = bytes.subspan(static_cast<size_t>(count));
    }
    return true;
}

} // namespace support
