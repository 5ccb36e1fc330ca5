// Writes a text file of comma-separated fields, in Latin-1: a character that Latin-1 lacks becomes "?".
#pragma once

#include "support/OutputFile.h"

#include <QString>

#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

class QIODevice;

namespace Tracelyn {

inline constexpr char kCsvSeparator = ',';
inline constexpr std::string_view kCsvLineEnd = "\r\n";

// Text could not be written. Carries the system's reason.
class CFileException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The text is collected and written in chunks. Every call that adds text, and Flush, throws CFileException
// when a chunk cannot be written; that chunk is lost.
class CCsvFile {
public:
    CCsvFile() = default;
    CCsvFile(const CCsvFile&) = delete;
    CCsvFile& operator=(const CCsvFile&) = delete;
    // Closes a file that is still open, and ignores errors: whoever wants them calls Close. When an exception
    // is what destroys this object, the file at the path stays as it was before Open.
    ~CCsvFile();

    // Writes beside the path; Close then puts the complete file there, where it replaces an existing one.
    // False when the path cannot be written or this object has a file open. Throws CFileException when
    // nothing can be written beside an existing file that itself is writable: writing into that file would be
    // possible but would lose its contents if writing failed.
    bool Open(const QString& path);
    // Writes to a device that the caller opened and keeps open; Close only flushes. False when the device is
    // not writable or this object has a file open.
    bool Open(QIODevice& device);
    // Throws CFileException when not everything could be written; the file is closed then, too.
    void Close();
    // Closes without the file: what is at the path stays as it was before Open.
    void Discard();

    void AppendText(std::string_view latin1);
    void EndLine();
    void WriteField(std::string_view latin1);
    // Ready, but no command writes one: the export writes names and floating values.
    void WriteIntegerField(int value);
    // The text between quotes; quotes inside it stay as they are.
    void WriteStringField(const QString& text);
    // Decimals as FormatFixed takes them: negative means 6.
    void WriteNumberField(float value, int decimals);
    void Flush();

private:
    // False when not everything was written. Either way nothing is pending afterwards.
    bool WritePending();
    bool Finish();
    bool Write(std::string_view text);

    std::string m_Pending;
    int m_nFieldsInLine = 0;
    size_t m_nUnsynced = 0; // bytes
    std::optional<support::COutputFile> m_Output;
    QIODevice* m_pDevice = nullptr; // that of m_Output or the caller's
    int m_nExceptions = std::uncaught_exceptions();
};

} // namespace Tracelyn
