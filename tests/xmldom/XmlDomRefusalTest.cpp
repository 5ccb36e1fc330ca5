// Documents that want more than to be read.
#include "XmlDomTesting.h"

#include <QBuffer>

TEST(XmlDomRefusal, RefusesEveryEntityDeclarationAtItsLine) {
    for (const char* declaration :
         {"<!ENTITY a 'x'>", "<!ENTITY a SYSTEM 'file:///etc/passwd'>",
          "<!ENTITY a PUBLIC 'p' 'http://127.0.0.1:1/'>", "<!ENTITY % a 'x'>",
          "<!ENTITY % a SYSTEM 'other.dtd'> %a;", "<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'x' NDATA n>"})
        EXPECT_EQ(ErrorOf("<!DOCTYPE r [\n<!ELEMENT r ANY>\n" + QByteArray(declaration) + "\n]>\n<r>&a;</r>"),
                  "[string input] (3): Entity declarations are not allowed (Error)\n")
            << declaration;
}

TEST(XmlDomRefusal, RefusesEntitiesThatAnotherFileMightDeclare) {
    const QByteArray type = "<!DOCTYPE r SYSTEM 'x'>";
    for (const char* root :
         {"<r>1\n&a;2</r>", "<r>\n<b/>&a;</r>", "<r\na='&a;'/>", "<r>\n<b xmlns:p='&a;'/></r>"})
        EXPECT_EQ(ErrorOf(type + root), "[string input] (2): Undeclared entities are not allowed (Error)\n")
            << root;
    const CXmlDomElement root = RootOf(type + "<r a='&quot;&#65;'>&lt;1&#50;&amp;&apos;&gt;&#x33;</r>");
    EXPECT_EQ(root.GetText(), "<12&'>3");
    EXPECT_EQ(root.GetAttribute("a"), "\"A");
}

TEST(XmlDomRefusal, ReadsNoOtherFile) {
    const XmlFile dtd("<!ENTITY a 'from outside'><!ATTLIST r b CDATA 'from outside'>");
    const CXmlDomElement root = RootOf("<!DOCTYPE r SYSTEM '" + dtd.Path().toUtf8() + "'><r/>");
    EXPECT_FALSE(root.HasAttribute("b"));
}

TEST(XmlDomRefusal, AttributeDefaultsDoNotMakeTheDocumentLarger) {
    const auto document = [](const QByteArray& attribute) {
        return "<!DOCTYPE r [<!ATTLIST e " + attribute + " CDATA '" + QByteArray(50'000, 'x') + "'>]><r>" +
               QByteArray("<e/>").repeated(5000) + "</r>";
    };
    for (const char* attribute : {"xmlns", "xmlns:p"})
        EXPECT_EQ(ErrorOf(document(attribute)),
                  "[string input] (1): Namespace defaults make the document too large (Error)\n");
    CXmlDomElement child;
    ASSERT_TRUE(RootOf(document("a")).GetChildByName("e", child));
    EXPECT_FALSE(child.HasAttribute("a"));
}

TEST(XmlDomRefusal, TakesWrittenNamespacesAndHugeTexts) {
    const QByteArray element = "<e xmlns='http://example.org/a/long/namespace/address'/>";
    EXPECT_EQ(ErrorOf("<r>" + element.repeated(50'000) + "</r>"), "");
    const QByteArray lines = QByteArray("1;-2.5;3e4;0\n").repeated(1'500'000);
    EXPECT_TRUE(RootOf("<r>" + lines + "</r>").GetTextUtf8() == lines.toStdString());
}

// Each "--" would cost as much as the whole comment.
TEST(XmlDomRefusal, ReadsNothingBehindTheFirstError) {
    QByteArray bytes = "<r>\n<!--" + QByteArray("--1\n").repeated(50'000) + "--></r>";
    QBuffer file(&bytes);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    CXmlDomDocument document;
    QString error;
    EXPECT_FALSE(document.LoadDevice(file, "a", error));
    EXPECT_EQ(error, "a (2): Double hyphen within comment (Error)\n");
    EXPECT_LT(file.pos(), 20'000);
}

// What costs the parser the square of its number.
TEST(XmlDomRefusal, StopsBeforeMarkupBecomesExpensive) {
    // The text between, as often as wanted; @ in it counts up.
    const auto many = [](const QByteArray& before, const QByteArray& each, int count,
                         const QByteArray& after) {
        QByteArray text = before;
        for (int i = 0; i < count; ++i)
            text += QByteArray(each).replace('@', QByteArray::number(i));
        return text + after;
    };
    const auto written = [&](int count) { return many("<r", " a@=''", count, "/>"); };
    const auto namespaces = [&](int count) { return many("<r", " xmlns:n@='u'", count, "/>"); };
    const auto nested = [](int count, const QByteArray& attribute = "") {
        return ("<a" + attribute + ">").repeated(count) + QByteArray("</a>").repeated(count);
    };
    const auto prefix = [](int length) { return "<r xmlns:" + QByteArray(length, 'p') + "='u'/>"; };
    const auto defaults = [&](int count) {
        return many("<!DOCTYPE r [<!ATTLIST r", " a@ CDATA ''", count, ">]><r/>");
    };
    const auto list = [&](int count) {
        return many("<!DOCTYPE r [<!ATTLIST r a (b", "|c@", count, ") #IMPLIED>]><r/>");
    };
    const QByteArray namespaced = " xmlns:n='u'";
    for (const QByteArray& sound : {written(1024), namespaces(16), nested(16, namespaced), prefix(32),
                                    nested(256), defaults(16), list(5000)})
        EXPECT_EQ(ErrorOf(sound), "") << sound.left(60).constData();
    for (const auto& [reason, documents] :
         {std::pair{"Too many attributes", std::vector{written(1025), written(1'000'000)}},
          std::pair{"Too many namespaces",
                    std::vector{namespaces(17), namespaces(500'000), nested(17, namespaced)}},
          std::pair{"A namespace prefix is too long", std::vector{prefix(33), prefix(1'000'000)}},
          std::pair{"Elements are nested too deeply", std::vector{nested(257), nested(200'000)}},
          std::pair{"Too many attribute defaults", std::vector{defaults(17), defaults(2000)}},
          std::pair{"The document type declaration is too long",
                    std::vector{list(500'000), "<!DOCTYPE r [" + QByteArray(100'000, ' ') + "]><r/>"}}}) {
        for (const QByteArray& document : documents)
            EXPECT_EQ(ErrorOf(document), QString("[string input] (1): %1 (Error)\n").arg(reason));
    }
}

TEST(XmlDomRefusal, StopsInsideAPieceOfMarkupThatNobodyWouldWrite) {
    const QByteArray fill(1 << 20, 'x');
    for (const auto& [begin, end] : {std::pair{"<r a='", "'/>"}, {"<!--", "--><r/>"}, {"<?p ", "?><r/>"}}) {
        EXPECT_EQ(ErrorOf(begin + fill.repeated(15) + end), "") << begin;
        EXPECT_EQ(ErrorOf(begin + fill.repeated(18) + end),
                  "[string input] (1): A piece of markup is too long (Error)\n")
            << begin;
    }
    // Many long ones are no very long one, unless they are names.
    const QByteArray some = "<a b='" + fill + "'/><!--" + fill + "--><?p " + fill + "?>";
    EXPECT_EQ(ErrorOf("<r>" + some.repeated(18) + "<![CDATA[" + fill.repeated(18) + "]]></r>"), "");
    const auto named = [&](int count) {
        return "<r>" + ("<" + fill + " " + fill + "='1'/>").repeated(count) + "</r>";
    };
    EXPECT_EQ(ErrorOf(named(31)), "");
    EXPECT_EQ(ErrorOf(named(32)), "[string input] (1): The names in the document are too long (Error)\n");
}

TEST(XmlDomRefusal, StopsBeforeTheTreeBecomesLarge) {
    const auto document = [](int count) { // of elements, attributes, comments, instructions, CDATA sections
        return "<r>" + QByteArray("<a b=''/><!----><?p?><![CDATA[]]>").repeated(count / 5) + "</r>";
    };
    EXPECT_EQ(ErrorOf(document(999'995)), "");
    EXPECT_EQ(ErrorOf(document(1'000'000)), "[string input] (1): The document has too many nodes (Error)\n");
}
