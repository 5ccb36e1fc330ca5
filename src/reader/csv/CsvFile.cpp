#include "reader/csv/CsvFile.h"

#include "support/FixedText.h"

#include <QByteArray>
#include <QFileInfo>
#include <QIODevice>

#include <array>
#include <charconv>
#include <cstddef>

namespace Tracelyn {

namespace {

constexpr size_t kFlushAboveBytes = 4096;
constexpr size_t kSyncAboveBytes = 1 << 22;

CFileException WriteError(const QIODevice* device) {
    return CFileException(device ? device->errorString().toStdString() : "file is not open");
}

} // namespace

CCsvFile::~CCsvFile() {
    if (m_pDevice && std::uncaught_exceptions() == m_nExceptions)
        Finish();
}

bool CCsvFile::Open(const QString& path) {
    if (m_pDevice)
        return false;
    m_nFieldsInLine = 0;
    m_Output.emplace(path);
    if (m_Output->IsOpen()) {
        m_pDevice = &m_Output->GetDevice();
        return true;
    }
    const CFileException error = WriteError(&m_Output->GetDevice());
    m_Output.reset();
    const QFileInfo existing(path);
    if (existing.isFile() && existing.isWritable())
        throw error;
    return false;
}

bool CCsvFile::Open(QIODevice& device) {
    if (m_pDevice || !device.isWritable())
        return false;
    m_nFieldsInLine = 0;
    m_pDevice = &device;
    return true;
}

void CCsvFile::Close() {
    const bool finished = Finish();
    const CFileException error = WriteError(m_pDevice);
    m_pDevice = nullptr;
    m_Output.reset();
    if (!finished)
        throw error;
}

void CCsvFile::Discard() {
    m_Pending.clear();
    m_pDevice = nullptr;
    m_Output.reset();
}

bool CCsvFile::Finish() {
    return WritePending() && (!m_Output || m_Output->Commit());
}

void CCsvFile::AppendText(std::string_view latin1) {
    if (latin1.size() > kFlushAboveBytes) { // a chunk of its own
        Flush();
        if (!Write(latin1))
            throw WriteError(m_pDevice);
        return;
    }
    m_Pending += latin1;
    if (m_Pending.size() > kFlushAboveBytes)
        Flush();
}

void CCsvFile::EndLine() {
    AppendText(kCsvLineEnd);
    m_nFieldsInLine = 0;
}

void CCsvFile::WriteField(std::string_view latin1) {
    if (m_nFieldsInLine != 0)
        AppendText({&kCsvSeparator, 1});
    AppendText(latin1);
    ++m_nFieldsInLine;
}

void CCsvFile::WriteIntegerField(int value) {
    std::array<char, 12> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    WriteField(std::string_view(buffer.data(), static_cast<size_t>(end - buffer.data())));
}

void CCsvFile::WriteStringField(const QString& text) {
    const QByteArray quoted = '"' + text.toLatin1() + '"';
    WriteField(std::string_view(quoted.data(), static_cast<size_t>(quoted.size())));
}

void CCsvFile::WriteNumberField(float value, int decimals) {
    std::array<char, support::kFixedTextCapacity> buffer;
    WriteField(support::FormatFixed(buffer, value, decimals));
}

void CCsvFile::Flush() {
    if (!WritePending())
        throw WriteError(m_pDevice);
}

bool CCsvFile::WritePending() {
    if (m_Pending.empty())
        return true;
    const bool written = Write(m_Pending);
    m_Pending.clear();
    return written;
}

bool CCsvFile::Write(std::string_view text) {
    if (!m_pDevice || !support::WriteAll(*m_pDevice, text))
        return false;
    m_nUnsynced += text.size();
    if (m_Output && m_nUnsynced > kSyncAboveBytes) {
        m_Output->BeginSync();
        m_nUnsynced = 0;
    }
    return true;
}

} // namespace Tracelyn
