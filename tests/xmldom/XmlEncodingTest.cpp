#include "XmlDomTesting.h"

#include <QStringEncoder>

namespace {

// The byte order mark of UTF-8, which says more than what is declared behind it.
const QByteArray kMark = "\xEF\xBB\xBF";

QByteArray Declared(const char* encoding, const QByteArray& text) {
    return QByteArray("<?xml version='1.0' encoding='") + encoding + "'?>\n<r a='" + text + "'>" + text +
           "</r>";
}

QByteArray Utf16(QStringConverter::Encoding byteOrder, const QByteArray& utf8) {
    return QStringEncoder(byteOrder, QStringConverter::Flag::WriteBom)(QString::fromUtf8(utf8));
}

void ExpectText(const QByteArray& bytes, const QString& expected) {
    const XmlFile file(bytes);
    CXmlDomDocument document;
    CXmlDomElement root;
    QString error;
    ASSERT_TRUE(document.Load(file.Path(), error) && document.GetRootElement(root)) << error.toStdString();
    EXPECT_EQ(root.GetText(), expected) << bytes.left(50).toStdString();
    EXPECT_EQ(root.GetAttribute("a"), expected) << bytes.left(50).toStdString();
}

} // namespace

TEST(XmlEncoding, ReadsEveryEncoding) {
    const QByteArray text = "Kör€\U0001F527&lt;";
    const QByteArray plain = "<r a='" + text + "'>" + text + "</r>";
    using Converter = QStringConverter;
    for (const QByteArray& bytes :
         {plain, kMark + plain, Declared("utf-8", text), Utf16(Converter::Utf16LE, plain),
          Utf16(Converter::Utf16BE, plain), Utf16(Converter::Utf16LE, Declared("UTF-16", text)),
          Utf16(Converter::Utf16BE, Declared("UTF-16", text)), kMark + Declared("utf-8", text),
          kMark + Declared("ISO-8859-1", text), kMark + Declared("UTF-16", text),
          kMark + Declared("none", text)})
        ExpectText(bytes, QString::fromUtf8("Kör€\U0001F527<"));
    ExpectText(Declared("ISO-8859-1", "\xE4\xB0\xFF"), QString::fromUtf8("ä°ÿ"));
    ExpectText(Declared("US-ASCII", "plain&#xE4;"), QString::fromUtf8("plainä"));
    ExpectText(Declared("windows-1252", "\x80\xE4\x99\x9F&#x4E2D;"), QString::fromUtf8("€ä™Ÿ中"));
    ExpectText(Declared("cp1252", "\x93\x81\x94"), QString::fromUtf8("“\xC2\x81”"));
    // Across the pieces in which the file is read.
    ExpectText(Declared("windows-1252", QByteArray("\x80\xE4x").repeated(20'000)),
               QString::fromUtf8("€äx").repeated(20'000));
}

TEST(XmlEncoding, BytesThatTheEncodingDoesNotHaveAreParseErrorsAndPrintNothing) {
    testing::internal::CaptureStderr();
    for (const QByteArray& bytes : {QByteArray("<r>\xE4</r>"), Declared("UTF-8", "\xC3"),
                                    Declared("US-ASCII", "\xE4"), Declared("no-such-encoding", "x")})
        EXPECT_TRUE(ErrorOf(bytes).endsWith(" (Error)\n")) << bytes.constData();
#ifndef Q_OS_WIN // which does not know the encoding
    EXPECT_TRUE(ErrorOf(Declared("Shift_JIS", "\xff\xfe\xff")).contains("input conversion failed"));
#endif
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
