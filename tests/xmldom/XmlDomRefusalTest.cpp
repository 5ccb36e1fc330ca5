// Documents that want more than to be read.
#include "XmlDomTesting.h"

TEST(XmlDomRefusal, RefusesEveryEntityDeclarationAtItsLine) {
    for (const char* declaration :
         {"<!ENTITY a 'x'>", "<!ENTITY a SYSTEM 'file:///etc/passwd'>",
          "<!ENTITY a PUBLIC 'p' 'http://127.0.0.1:1/'>", "<!ENTITY % a 'x'>",
          "<!ENTITY % a SYSTEM 'other.dtd'> %a;", "<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'x' NDATA n>"})
        EXPECT_EQ(ErrorOf("<!DOCTYPE r [\n<!ELEMENT r ANY>\n" + QByteArray(declaration) + "\n]>\n<r>&a;</r>"),
                  "[string input] (3): Entity declarations are not allowed (Error)\n")
            << declaration;
}

TEST(XmlDomRefusal, ReadsNoOtherFile) {
    const XmlFile dtd("<!ENTITY a 'from outside'><!ATTLIST r b CDATA 'from outside'>");
    const CXmlDomElement root = RootOf("<!DOCTYPE r SYSTEM '" + dtd.Path().toUtf8() + "'><r>1&a;</r>");
    EXPECT_EQ(root.GetText(), "1");
    EXPECT_FALSE(root.HasAttribute("b"));
}

TEST(XmlDomRefusal, AttributeDefaultsDoNotMakeTheDocumentLarger) {
    const auto document = [](const QByteArray& attribute) {
        return "<!DOCTYPE r [<!ATTLIST e " + attribute + " CDATA '" + QByteArray(100'000, 'x') + "'>]><r>" +
               QByteArray("<e/>").repeated(5000) + "</r>";
    };
    for (const char* attribute : {"xmlns", "xmlns:p"})
        EXPECT_EQ(ErrorOf(document(attribute)),
                  "[string input] (1): Namespace defaults make the document too large (Error)\n");
    CXmlDomElement child;
    ASSERT_TRUE(RootOf(document("a")).GetChildByName("e", child));
    EXPECT_FALSE(child.HasAttribute("a"));
}

TEST(XmlDomRefusal, TakesWrittenNamespacesDeepNestingAndHugeTexts) {
    const QByteArray element = "<e xmlns='http://example.org/a/long/namespace/address'/>";
    EXPECT_EQ(ErrorOf("<r>" + element.repeated(50'000) + "</r>"), "");
    const QByteArray deep = QByteArray("<a>").repeated(200'000);
    EXPECT_NE(ErrorOf(deep), "");
    EXPECT_EQ(ErrorOf(deep + QByteArray("</a>").repeated(200'000)), "");
    const QByteArray lines = QByteArray("1;-2.5;3e4;0\n").repeated(1'500'000);
    EXPECT_TRUE(RootOf("<r>" + lines + "</r>").GetTextUtf8() == lines.toStdString());
}

TEST(XmlDomRefusal, CountsAttributesAndTheirDefaults) {
    const auto numbered = [](int count, const QByteArray& value) {
        QByteArray attributes;
        for (int i = 0; i < count; ++i)
            attributes += " a" + QByteArray::number(i) + value;
        return attributes;
    };
    const auto written = [&](int count) { return "<r" + numbered(count, "=''") + "/>"; };
    const auto defaults = [&](int count) {
        return "<!DOCTYPE r [<!ATTLIST r" + numbered(count, " CDATA ''") + ">]><r/>";
    };
    EXPECT_EQ(ErrorOf(written(1024)), "");
    EXPECT_EQ(ErrorOf(defaults(256)), "");
    EXPECT_EQ(ErrorOf(written(1025)), "[string input] (1): Too many attributes (Error)\n");
    EXPECT_EQ(ErrorOf(defaults(257)), "[string input] (1): Too many attribute defaults (Error)\n");
}
