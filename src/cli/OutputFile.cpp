#include "OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

OutputFile::OutputFile(const QString& path) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile() && !existing.isDir())
        m_pDevice = std::make_unique<QFile>(path);
    else
        m_pDevice = std::make_unique<QSaveFile>(path);
    m_pDevice->open(QIODevice::WriteOnly);
}

bool OutputFile::Commit() {
    if (auto* const saved = dynamic_cast<QSaveFile*>(m_pDevice.get()))
        return saved->commit();
    m_pDevice->close();
    return m_pDevice->error() == QFileDevice::NoError;
}
