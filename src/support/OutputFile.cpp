#include "support/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace support {

bool WriteAll(QIODevice& device, std::string_view bytes) {
    while (!bytes.empty()) {
        const qint64 written = device.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

OutputFile::OutputFile(const QString& path) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile() && !existing.isDir())
        m_pDevice = std::make_unique<QFile>(path);
    else
        m_pDevice = std::make_unique<QSaveFile>(path);
    m_pDevice->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool OutputFile::Commit() {
    if (auto* const saved = dynamic_cast<QSaveFile*>(m_pDevice.get()))
        return saved->commit();
    m_pDevice->close();
    return m_pDevice->error() == QFileDevice::NoError;
}

} // namespace support
