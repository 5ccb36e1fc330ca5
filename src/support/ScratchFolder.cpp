#include "support/ScratchFolder.h"

#include "support/PrivateFolder.h"

#include <QDir>
#include <QRandomGenerator>

#include <utility>

namespace support {

namespace {

const QString kPrefix = QStringLiteral("tracelyn-run-");

void RemoveFolder(const QString& path, std::unique_ptr<FolderLock> lock) {
    QDir(path).removeRecursively();
    // Where an open file cannot be removed, folder and lock are still there.
    lock.reset();
    QDir().rmdir(path);
}

} // namespace

ScratchFolder::ScratchFolder() {
    RemoveStale();
    const auto parent = PrivateTemporaryFolder();
    // Another process may take a folder away that is not locked yet.
    constexpr int kTries = 10;
    for (int i = 0; parent && !m_pLock && i < kTries; ++i) {
        m_strPath = *parent + kPrefix + QString::number(QRandomGenerator::system()->generate64(), 16) +
                    QDir::separator();
        if (!QDir().mkdir(m_strPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
            continue;
        m_pLock = FolderLock::Take(m_strPath);
        if (!m_pLock)
            QDir().rmdir(m_strPath);
    }
}

ScratchFolder::~ScratchFolder() {
    if (m_pLock)
        RemoveFolder(m_strPath, std::move(m_pLock));
}

void ScratchFolder::RemoveStale() {
    const auto parent = PrivateTemporaryFolder();
    if (!parent)
        return;
    const QDir folder(*parent);
    const auto filter = QDir::Dirs | QDir::Hidden | QDir::NoSymLinks;
    for (const QString& name : folder.entryList({kPrefix + u'*'}, filter)) {
        const QString path = folder.filePath(name);
        if (auto lock = FolderLock::Take(path))
            RemoveFolder(path, std::move(lock));
    }
}

} // namespace support
