#include "ScratchFolder.h"

#include "PrivateFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

namespace support {

namespace {

const QString kPrefix = QStringLiteral("tracelyn-run-");
const QString kLockSuffix = QStringLiteral(".lock");

// The system releases a lock with its process. The process id in the lock file may be used again or mean
// nothing here (another machine's, a container's), so a lock is worth trying when it is old, too.
std::unique_ptr<QLockFile> TryLock(const QString& folder) {
    constexpr int kOldAfter = 60'000;
    auto lock = std::make_unique<QLockFile>(folder + kLockSuffix);
    lock->setStaleLockTime(kOldAfter);
    return lock->tryLock(0) ? std::move(lock) : nullptr;
}

// A link is removed itself, not what it points to.
void RemoveFolder(const QString& path) {
    if (QFileInfo(path).isSymLink())
        QFile::remove(path);
    else
        QDir(path).removeRecursively();
}

} // namespace

ScratchFolder::ScratchFolder() {
    RemoveStale();
    const auto parent = PrivateTemporaryFolder();
    if (!parent)
        return;
    const QString number = QString::number(QRandomGenerator::system()->generate64(), 16);
    const QString path = *parent + kPrefix + number;
    m_pLock = TryLock(path);
    if (m_pLock && QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        m_strPath = path + QDir::separator();
}

ScratchFolder::~ScratchFolder() {
    if (IsValid())
        RemoveFolder(m_strPath.chopped(1));
}

void ScratchFolder::RemoveStale() {
    const auto parent = PrivateTemporaryFolder();
    if (!parent)
        return;
    const QStringList locks =
        QDir(*parent).entryList({kPrefix + u'*' + kLockSuffix}, QDir::Files | QDir::Hidden);
    for (const QString& name : locks) {
        const QString path = *parent + name.chopped(kLockSuffix.size());
        if (const auto lock = TryLock(path))
            RemoveFolder(path);
    }
}

} // namespace support
