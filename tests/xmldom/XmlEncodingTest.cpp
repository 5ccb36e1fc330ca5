#include "XmlDomTesting.h"

#include <QStringEncoder>

namespace {

QByteArray Declared(const char* encoding, const QByteArray& text) {
    return QByteArray("<?xml version='1.0' encoding='") + encoding + "'?>\n<r a='" + text + "'>" + text +
           "</r>";
}

QByteArray Utf16(QStringConverter::Encoding byteOrder, const QByteArray& utf8) {
    QStringEncoder encode(byteOrder, QStringConverter::Flag::WriteBom);
    return encode(QString::fromUtf8(utf8));
}

void ExpectText(const QByteArray& bytes, const QString& expected, const char* what) {
    const XmlFile file(bytes);
    for (const bool fromFile : {true, false}) {
        CXmlDomDocument document;
        CXmlDomElement root;
        QString error;
        const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        ASSERT_TRUE(fromFile ? document.Load(file.Path(), error) : document.LoadXmlBytes(view, error))
            << what << ": " << error.toStdString();
        ASSERT_TRUE(document.GetRootElement(root));
        EXPECT_EQ(root.GetText(), expected) << what;
        EXPECT_EQ(root.GetAttribute("a"), expected) << what;

        ASSERT_TRUE(document.Save(file.Path() + ".copy")) << what;
        ASSERT_TRUE(document.Load(file.Path() + ".copy", error)) << what << ": " << error.toStdString();
        ASSERT_TRUE(document.GetRootElement(root));
        EXPECT_EQ(root.GetText(), expected) << what << " saved";
    }
}

} // namespace

TEST(XmlEncoding, ReadsAndSavesEveryEncoding) {
    const QByteArray text = "Kör\xE2\x82\xAC\xF0\x9F\x94\xA7";
    const QString expected = QString::fromUtf8(text);
    const QByteArray plain = "<r a='" + text + "'>" + text + "</r>";
    using Converter = QStringConverter;
    ExpectText(plain, expected, "UTF-8");
    ExpectText("\xEF\xBB\xBF" + plain, expected, "UTF-8 with mark");
    ExpectText(Declared("utf-8", text), expected, "UTF-8 declared");
    ExpectText(Utf16(Converter::Utf16LE, plain), expected, "UTF-16 LE");
    ExpectText(Utf16(Converter::Utf16BE, plain), expected, "UTF-16 BE");
    ExpectText(Utf16(Converter::Utf16LE, Declared("UTF-16", text)), expected, "UTF-16 LE declared");
    ExpectText(Utf16(Converter::Utf16BE, Declared("UTF-16", text)), expected, "UTF-16 BE declared");
    ExpectText(Declared("ISO-8859-1", "\xE4\xB0\xFF"), QString::fromUtf8("ä°ÿ"), "ISO-8859-1");
    ExpectText(Declared("US-ASCII", "plain&#xE4;"), QString::fromUtf8("plainä"), "US-ASCII");
    ExpectText(Declared("windows-1252", "\x80\xE4\x99\x9F&#x4E2D;"), QString::fromUtf8("€ä™Ÿ中"),
               "windows-1252");
    ExpectText(Declared("cp1252", "\x93\x81\x94"), QString::fromUtf8("“\xC2\x81”"), "cp1252");
}

TEST(XmlEncoding, Windows1252WorksAcrossTheReadersPieces) {
    QByteArray bytes;
    QString expected;
    for (int i = 0; i < 50'000; ++i) {
        bytes += i % 3 == 0 ? "\x80" : i % 3 == 1 ? "\xE4" : "x";
        expected += QString::fromUtf8(i % 3 == 0 ? "€" : i % 3 == 1 ? "ä" : "x");
    }
    ExpectText(Declared("windows-1252", bytes), expected, "long");
}

TEST(XmlEncoding, AStringIsReadAsItIsWhateverItDeclares) {
    for (const char* encoding : {"UTF-8", "UTF-16", "ISO-8859-1", "windows-1252"}) {
        const CXmlDomElement root = RootOf(QString::fromUtf8(Declared(encoding, "ä€")));
        EXPECT_EQ(root.GetText(), QString::fromUtf8("ä€")) << encoding;
    }
    EXPECT_EQ(RootOf(QChar(0xFEFF) + QStringLiteral("<r>x</r>")).GetText(), "x");
}

TEST(XmlEncoding, BytesThatTheEncodingDoesNotHaveAreParseErrors) {
    for (const QByteArray& bytes : {QByteArray("<r>\xE4</r>"), Declared("UTF-8", "\xC3"),
                                    Declared("US-ASCII", "\xE4"), Declared("no-such-encoding", "x")}) {
        CXmlDomDocument document;
        QString error;
        EXPECT_FALSE(
            document.LoadXmlBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())}, error));
        EXPECT_TRUE(error.startsWith("[string input] (") && error.endsWith(" (Error)\n"))
            << error.toStdString();
    }
}
