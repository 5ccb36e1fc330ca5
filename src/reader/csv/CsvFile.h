// A text file of comma-separated fields. Text is collected and written in chunks, in Latin-1 ("?" for what
// that lacks).
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

// A write error, with the system's reason.
class CFileException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Whatever appends text or flushes throws CFileException when the text cannot be written; the text is then
// dropped.
class CCsvFile {
public:
    CCsvFile() = default;
    CCsvFile(const CCsvFile&) = delete;
    CCsvFile& operator=(const CCsvFile&) = delete;
    // Closes an open file. Errors go unnoticed: call Close first to see them. A file that is destroyed
    // because of an exception does not get to its place.
    ~CCsvFile();

    // The file comes to its place, or takes the place of an older one, when it is closed and all was written.
    // False when that place is out of reach or a file is open already. Throws CFileException when an existing
    // file could be written over, but only so that a failure would cost its contents.
    bool Open(const QString& path);
    // Writes to a device that the caller opened and keeps; Close only flushes into it. False as above.
    bool Open(QIODevice& device);
    // Closes also when not everything could be written, and then throws.
    void Close();

    void AppendText(std::string_view latin1);
    void EndLine();
    void WriteField(std::string_view latin1);
    void WriteIntegerField(int value);
    // The text between quotes; quotes inside it stay as they are.
    void WriteStringField(const QString& text);
    // Decimals as FormatFixed takes them: negative means 6.
    void WriteNumberField(float value, int decimals);
    void Flush();

private:
    // False when not everything was written. Nothing is pending afterwards.
    bool WritePending();
    bool Finish();

    std::string m_Pending;
    int m_nFieldsInLine = 0;
    std::optional<support::COutputFile> m_Output;
    QIODevice* m_pDevice = nullptr; // that of m_Output or the caller's
    int m_nExceptions = std::uncaught_exceptions();
};

} // namespace Tracelyn
