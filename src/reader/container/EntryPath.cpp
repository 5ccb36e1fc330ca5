#include "reader/container/EntryPath.h"

#include "support/OutputFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace Tracelyn {

namespace {

// A file's or folder's name that means the same on every system. Windows drops dots and blanks at the end.
bool IsPlainName(const QString& name) {
    return !name.isEmpty() && !name.endsWith(u'.') && !name.endsWith(u' ') && !support::IsDeviceName(name) &&
           std::ranges::none_of(name, [](QChar c) { return c < u' ' || c == u':'; });
}

bool IsAbsolute(const QString& path) {
#ifdef Q_OS_WIN
    return path.size() >= 3 && path[1] == u':' && path[2] == u'/';
#else
    return path.startsWith(u'/');
#endif
}

bool MakeRealFolder(const QString& path) {
    QDir().mkdir(path);
    const QFileInfo made(path);
    return made.isDir() && !made.isSymLink() && !made.isJunction();
}

} // namespace

std::optional<QString> PrepareEntryPath(const QString& targetFolder, const QByteArray& storedName) {
    const QString name = QString::fromLatin1(storedName).replace(u'\\', u'/');
    const QString target = QDir::fromNativeSeparators(targetFolder);
    if (!IsAbsolute(target) || !std::ranges::all_of(name.split(u'/'), IsPlainName))
        return std::nullopt;
    const QString path = target + name;
    const auto rootEnd = target.lastIndexOf(u'/') + 1;
    if (!QDir().mkpath(path.left(rootEnd)))
        return std::nullopt;
    for (auto end = path.indexOf(u'/', rootEnd); end >= 0; end = path.indexOf(u'/', end + 1)) {
        if (!MakeRealFolder(path.left(end)))
            return std::nullopt;
    }
    return path;
}

} // namespace Tracelyn
