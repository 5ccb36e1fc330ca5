// Sample rows that stay in their file while the rest of the document is parsed.
#include "reader/rows/RowsApart.h"

#include "reader/rows/SampleText.h"
#include "xmldom/XmlDomTesting.h"

#include <QRegularExpression>
#include <QStringEncoder>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

QByteArray Declared(const char* encoding, const QByteArray& text) {
    return QByteArray("<?xml version='1.0' encoding='") + encoding + "'?><r><Data>" + text + "</Data></r>";
}

QByteArray WithoutLineEnds(QByteArray text) {
    while (text.endsWith('\n') || text.endsWith('\r'))
        text.chop(1);
    return text;
}

// The rows that were left in the file; nothing when they were parsed with the rest.
std::optional<QByteArray> RowsApart(const QByteArray& xml) {
    const XmlFile file(xml);
    CXmlDomDocument document;
    std::unique_ptr<CSampleText> rows;
    QString error;
    if (!LoadWithRowsApart(file.Path(), "Data", document, rows, error))
        return std::nullopt;
    CXmlDomElement root;
    CXmlDomElement data;
    EXPECT_TRUE(document.GetRootElement(root) && root.GetChildByName("Data", data));
    if (rows == nullptr)
        return std::nullopt;
    EXPECT_EQ(data.GetTextUtf8(), "");
    QByteArray text(rows->GetSize(), '\0');
    EXPECT_TRUE(rows->Read(0, {text.data(), static_cast<size_t>(text.size())}));

    // The whole document says the same.
    CXmlDomDocument whole;
    EXPECT_TRUE(whole.Load(file.Path(), error) && whole.GetRootElement(root));
    EXPECT_TRUE(root.GetChildByName("Data", data));
    EXPECT_EQ(WithoutLineEnds(data.GetText().toUtf8()), QByteArray(text).replace("\r\n", "\n"));
    return text;
}

} // namespace

TEST(RowsApart, IsPlainTextThatTheParserWouldNotChange) {
    const QByteArray rows = "1,2.5\n-3,\r\n 4\t,x";
    const QByteArray large = QByteArray("1,2\r\n3,4\n").repeated(150'000);
    for (const QByteArray& text : {rows, large, large + QByteArray(7, '9'), QByteArray("\n1\n")}) {
        for (const QByteArray& xml :
             {QByteArray("<r><Data>") + text + "</Data></r>", "\xEF\xBB\xBF<r><Data>" + text + "</Data></r>",
              "<r><a/><DataSet/><Data a='1'\n b=\"2\" >" + text + "<!--x-->5</Data><Data>6</Data></r>",
              "<r xmlns='n'><p:Data xmlns:p='p'/><!-- " + QByteArray(300'000, ' ') + "--><Data>" + text +
                  "<![CDATA[1]]></Data></r>",
              Declared("UTF-8", text), Declared("us-ascii", text), Declared("ISO-8859-1", text),
              Declared("windows-1252", text)})
            EXPECT_TRUE(RowsApart(xml) == WithoutLineEnds(text))
                << xml.left(60).constData() << " ... " << text.size();
    }
}

// The file is searched piece by piece, the first one being 32 KB.
TEST(RowsApart, AreFoundWhereverTheirTagBegins) {
    const QByteArray begin = "<r><!--";
    const QByteArray end = "--><Data>";
    for (int tag = (1 << 15) - 7; tag <= (1 << 15) + 1; ++tag) {
        const QByteArray xml =
            begin + QByteArray(tag - begin.size() - 3, ' ') + end + "1,2\n3,4\n</Data></r>";
        ASSERT_EQ(xml.indexOf("<Data"), tag);
        EXPECT_EQ(RowsApart(xml), "1,2\n3,4") << tag;
    }
}

TEST(RowsApart, EverythingElseIsParsedAsEver) {
    const QByteArray large = QByteArray("1,2\n").repeated(100'000);
    for (const QByteArray& data :
         {QByteArray("<Data/>"), QByteArray("<Data></Data>"), QByteArray("<Data>\n \r\n</Data>"),
          "<Data>" + large + "&#49;</Data>", "<Data>" + large + "1\r2</Data>", "<Data>" + large + "\r</Data>",
          QByteArray("<Data>\xC3\xA4</Data>"), QByteArray("<Data>1]2</Data>"),
          // the tag is none, not a child of the root, or not its first
          QByteArray("<!-- <Data>1</Data> --><Data>2</Data>"),
          QByteArray("<![CDATA[<Data>1]]><Data>2</Data>"), QByteArray("<a><Data>1</Data></a><Data>2</Data>"),
          QByteArray("<Data/><Data>2</Data>"), QByteArray("<Data a='<Data>1'>2</Data>"),
          QByteArray("<a b='1'/><Data a='>'>2</Data>")})
        EXPECT_EQ(RowsApart("<r>" + data + "</r>"), std::nullopt) << data.left(60).constData();
    for (const char* encoding : {"UTF-7", "ISO-2022-JP", "Shift_JIS"})
        EXPECT_EQ(RowsApart(Declared(encoding, "1,+AGE-,2")), std::nullopt) << encoding;
    for (const auto byteOrder : {QStringConverter::Utf16LE, QStringConverter::Utf16BE})
        EXPECT_EQ(RowsApart(QStringEncoder(byteOrder, QStringConverter::Flag::WriteBom)(
                      QStringLiteral("<r><Data>1,2\n3</Data></r>"))),
                  std::nullopt);
}

TEST(RowsApart, ErrorsAreThoseOfTheWholeDocument) {
    const QByteArray large = QByteArray("1,2\n").repeated(100'000);
    std::unique_ptr<CSampleText> rows;
    const QByteArray deep = QByteArray("<a>\n").repeated(300);
    for (const QByteArray& xml :
         {"<r><Data>" + large, "<r><Data>" + large + "</Date></r>", "<r><Data>" + large + "</Data></r><r/>",
          "<r><Data>" + large + "</Data><a b=1/></r>", "<r a='1'a='2'><Data>" + large + "</Data></r>",
          "<r><Data>" + large + "<x>&undefined;</x></Data></r>", QByteArray(),
          // known before the text, inside of what was taken for it, and behind it
          "<r>\n" + deep + "<Data>" + large + "</Data></r>", QByteArray("<r>\n<a b=1/><Data>1</Data></r>"),
          "<r>" + QByteArray("\n<a/>").repeated(2000) + "</s><Data>" + large + "</Data></r>",
          "<r><!--<Data>" + large + "--></s><a/>-->", "<r><Data>" + large + "</Data>\n" + deep + "</r>"}) {
        const XmlFile file(xml);
        QString apart;
        QString whole;
        CXmlDomDocument document;
        EXPECT_FALSE(LoadWithRowsApart(file.Path(), "Data", document, rows, apart));
        EXPECT_FALSE(document.Load(file.Path(), whole));
        EXPECT_EQ(apart, whole);
    }
    QString error;
    CXmlDomDocument document;
    EXPECT_FALSE(LoadWithRowsApart("/no/such/file", "Data", document, rows, error));
    EXPECT_EQ(error, "File does not exist");
#ifndef _WIN32
    const XmlFile removed("");
    const QByteArray pipe = removed.Path().toUtf8() + ".pipe";
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    EXPECT_FALSE(LoadWithRowsApart(pipe, "Data", document, rows, error)) << "but waits for nobody";
    EXPECT_EQ(error, pipe + " (0): This is no file (Error)\n");
    QFile::remove(pipe);
#endif
}
