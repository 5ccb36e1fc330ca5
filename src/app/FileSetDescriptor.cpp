#include "app/FileSetDescriptor.h"

#include <QDir>
#include <QFileInfo>
#include <QStringView>

#include <algorithm>
#include <utility>

namespace Tracelyn {

namespace {

constexpr int kMaxDigits = 2;

#ifdef Q_OS_WIN
constexpr bool kIsDirectoryLowered = true;
constexpr QStringView kDirectoryEnds = u"/\\:";
#else
constexpr bool kIsDirectoryLowered = false;
constexpr QStringView kDirectoryEnds = u"/";
#endif

struct SplitPath {
    QString directory; // as given
    QString baseName;
    uint32_t number = CFileSetDescriptor::kNoNumber;
    QString extension;
};

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

SplitPath Split(const QString& path) {
    SplitPath parts;
    const auto end =
        std::find_if(path.crbegin(), path.crend(), [](QChar c) { return kDirectoryEnds.contains(c); });
    const qsizetype nameStart = std::distance(end, path.crend());
    parts.directory = path.left(nameStart);

    const QString name = path.mid(nameStart).toLower();
    const qsizetype dot = name.lastIndexOf(u'.');
    parts.baseName = name.left(dot); // all of it when there is no dot
    if (dot >= 0)
        parts.extension = name.mid(dot);

    qsizetype digits = 0;
    while (digits < std::min<qsizetype>(kMaxDigits, parts.baseName.size()) &&
           IsDigit(parts.baseName.at(parts.baseName.size() - 1 - digits)))
        ++digits;
    if (digits > 0) {
        parts.number = parts.baseName.right(digits).toUInt();
        parts.baseName.chop(digits);
    }
    return parts;
}

// A directory with a letter whose small form is written differently has no other name than its own.
QString KeptDirectory(const QString& given) {
    const QString lowered = given.toLower();
    return kIsDirectoryLowered && (given.isEmpty() || QDir(lowered).exists()) ? lowered : given;
}

QString NumberText(uint32_t number) {
    return QStringLiteral("%1").arg(number, kMaxDigits, 10, QLatin1Char('0'));
}

QStringList FilesIn(const QString& directory) {
    const QDir dir(directory.isEmpty() ? QStringLiteral(".") : directory);
    return dir.entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

QString CFileSetDescriptor::LowestOfSet(const QStringList& paths) {
    const SplitPath first = Split(paths.front());
    QString lowest = paths.front();
    uint32_t number = first.number;
    for (const QString& path : paths) {
        const SplitPath parts = Split(path);
        const bool isOfSet = parts.directory == first.directory && parts.baseName == first.baseName &&
                             parts.extension == first.extension;
        if (isOfSet && parts.number < number) {
            lowest = path;
            number = parts.number;
        }
    }
    return lowest;
}

bool CFileSetDescriptor::SetFile(const QString& path) {
    const SplitPath parts = Split(path);
    m_nNumber = parts.number;
    m_strDirectory = KeptDirectory(parts.directory);
    m_strBaseName = parts.baseName;
    m_strExtension = parts.extension;
    m_strGivenName = path.mid(parts.directory.size());
    Scan();
    return true;
}

void CFileSetDescriptor::Clear() {
    *this = CFileSetDescriptor();
}

// Any text may stand between base name and number: run123.paf belongs to the measurement set "run" as
// number 23.
void CFileSetDescriptor::Scan() {
    QStringList names = FilesIn(m_strDirectory);
    for (QString& name : names)
        name = name.toLower();
    names.removeDuplicates();

    m_Numbers.clear();
    for (const QString& name : std::as_const(names)) {
        if (name.size() < m_strBaseName.size() + m_strExtension.size() || !name.startsWith(m_strBaseName) ||
            !name.endsWith(m_strExtension))
            continue;
        if (const uint32_t number = Split(name).number; number != kNoNumber)
            m_Numbers.push_back(number);
    }
    std::ranges::sort(m_Numbers);
}

QString CFileSetDescriptor::GetFullPath() const {
    const QString number = m_strExtension == QLatin1String(".xml") ? QString() : GetNumberText();
    const QString name = m_strBaseName + number + m_strExtension;
    // Of several names that differ in case alone, the one that was given is taken first, then the one in
    // lower case.
    for (const QString& exact : {m_strGivenName, name}) {
        if (exact.toLower() == name && QFileInfo(m_strDirectory + exact).isFile())
            return m_strDirectory + exact;
    }

    const QStringList files = FilesIn(m_strDirectory);
    const auto found =
        std::ranges::find_if(files, [&](const QString& file) { return file.toLower() == name; });
    return m_strDirectory + (found != files.end() ? *found : name);
}

QString CFileSetDescriptor::GetNumberText() const {
    return m_nNumber == kNoNumber ? QString() : NumberText(m_nNumber);
}

uint32_t CFileSetDescriptor::StepToPrevious() {
    const auto current = std::ranges::find(m_Numbers, m_nNumber);
    if (current != m_Numbers.end() && current != m_Numbers.begin())
        m_nNumber = *std::prev(current);
    return m_nNumber;
}

uint32_t CFileSetDescriptor::StepToNext() {
    const auto current = std::ranges::find(m_Numbers, m_nNumber);
    if (current != m_Numbers.end() && std::next(current) != m_Numbers.end())
        m_nNumber = *std::next(current);
    return m_nNumber;
}

QString CFileSetDescriptor::GetNextFreeName() const {
    const uint32_t next = m_Numbers.empty() ? 0 : m_Numbers.back() + 1;
    return m_strDirectory + m_strBaseName + NumberText(next) + m_strExtension;
}

} // namespace Tracelyn
