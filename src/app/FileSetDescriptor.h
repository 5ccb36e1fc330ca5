// A measurement set: files of one directory that share a base name and an extension and differ in a number of
// two digits. Knows the current file and which numbers exist, and steps from one to the next.
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace Tracelyn {

// Names are kept in lower case, so RUN05.PAF and run05.paf are the same file. Where the file system tells
// upper from lower case the directory is kept as given and files are found whatever their case.
class CFileSetDescriptor {
public:
    static constexpr uint32_t kNoNumber = UINT32_MAX;

    virtual ~CFileSetDescriptor() = default;

    // Of the paths that belong to the measurement set of the first one, the one with the lowest number. There
    // is at least one path.
    static QString LowestOfSet(const QStringList& paths);

    // Takes the path apart and looks up which numbers exist now; stepping does not look again. A directory
    // that cannot be read has no numbers. Always true.
    bool SetFile(const QString& path);
    void Clear();

    // Where the current file is: an existing file, the one that was given or the exact lower-case name
    // preferred, else the path that the parts make. An .xml file is addressed without its number.
    QString GetFullPath() const;
    const QString& GetBaseName() const { return m_strBaseName; }
    // With its dot; empty when the file has none.
    const QString& GetExtension() const { return m_strExtension; }
    // Two digits at least; empty when the file has no number.
    QString GetNumberText() const;

    // How many numbered files were found.
    int GetCount() const { return static_cast<int>(m_Numbers.size()); }
    // Step to the neighbouring number, if the current one is listed and has a neighbour. Both return the
    // current number.
    uint32_t StepToPrevious();
    uint32_t StepToNext();
    // True also for a measurement set without numbered files.
    bool IsFirst() const { return m_Numbers.empty() || m_nNumber == m_Numbers.front(); }
    bool IsLast() const { return m_Numbers.empty() || m_nNumber == m_Numbers.back(); }
    // The path of a further file: with the number after the last listed one, or 0 when none is listed. Ready,
    // but no command asks for it.
    QString GetNextFreeName() const;

private:
    void Scan();

    uint32_t m_nNumber = 0;
    std::vector<uint32_t> m_Numbers; // ascending; different names may give equal numbers
    QString m_strGivenName;          // the file's name as it was given
    QString m_strDirectory;          // ends with its separator; empty is the current directory
    QString m_strBaseName;
    QString m_strExtension = QStringLiteral(".frd");
};

} // namespace Tracelyn
