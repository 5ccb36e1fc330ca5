// A file as it would be without one part of it.
#pragma once

#include "xmldom/XmlPlainText.h"

#include <QIODevice>

namespace Tracelyn {

// Borrows the file.
class CXmlFileWithoutText : public QIODevice {
public:
    CXmlFileWithoutText(support::CSharedFile& file, const XmlTextRange& leftOut);

    bool isSequential() const override { return true; }
    // Whether anything behind the part was asked for.
    bool IsPastTheGap() const { return m_nAt > m_LeftOut.from; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    support::CSharedFile& m_File;
    XmlTextRange m_LeftOut;
    int64_t m_nAt = 0; // in the file
};

} // namespace Tracelyn
