#include "xmldom/XmlFileWithoutText.h"

#include "support/SharedFile.h"

#include <algorithm>

namespace Tracelyn {

CXmlFileWithoutText::CXmlFileWithoutText(support::CSharedFile& file, const XmlTextRange& leftOut)
    : m_File(file), m_LeftOut(leftOut) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 CXmlFileWithoutText::readData(char* data, qint64 size) {
    if (m_nAt == m_LeftOut.from)
        m_nAt += m_LeftOut.size;
    const int64_t end = m_nAt < m_LeftOut.from ? m_LeftOut.from : m_File.GetSize();
    const int64_t count = std::min<int64_t>(size, end - m_nAt);
    if (!m_File.Read(m_nAt, {data, static_cast<size_t>(count)}))
        return -1;
    m_nAt += count;
    return count;
}

} // namespace Tracelyn
