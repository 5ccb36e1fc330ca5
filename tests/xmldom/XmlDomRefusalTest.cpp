// Documents that want more than to be read.
#include "XmlDomTesting.h"

namespace {

QString ErrorOf(const QByteArray& content) {
    const XmlFile file(content);
    CXmlDomDocument document;
    QString error;
    EXPECT_FALSE(document.Load(file.Path(), error)) << content.left(200).constData();
    return error.mid(file.Path().size());
}

} // namespace

TEST(XmlDomRefusal, RefusesEveryEntityDeclarationAtItsLine) {
    for (const char* declaration :
         {"<!ENTITY a 'x'>", "<!ENTITY a SYSTEM 'file:///etc/passwd'>",
          "<!ENTITY a PUBLIC 'p' 'http://127.0.0.1:1/'>", "<!ENTITY % a 'x'>",
          "<!ENTITY % a SYSTEM 'other.dtd'> %a;", "<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'x' NDATA n>",
          "<!ENTITY lol 'lol'><!ENTITY lol2 '&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;'>"}) {
        EXPECT_EQ(ErrorOf("<!DOCTYPE r [\n<!ELEMENT r ANY>\n" + QByteArray(declaration) + "\n]>\n<r>&a;</r>"),
                  " (3): Entity declarations are not allowed (Error)\n")
            << declaration;
    }
}

TEST(XmlDomRefusal, ReadsNoOtherFile) {
    const XmlFile dtd("<!ENTITY a 'from outside'><!ATTLIST r b CDATA 'from outside'>");
    CXmlDomDocument document;
    QString error;
    ASSERT_TRUE(document.LoadXml("<!DOCTYPE r SYSTEM '" + dtd.Path() + "'><r>1&a;</r>", error))
        << error.toStdString();
    CXmlDomElement root;
    ASSERT_TRUE(document.GetRootElement(root));
    EXPECT_EQ(root.GetText(), "1");
    EXPECT_FALSE(root.HasAttribute("b"));
}

TEST(XmlDomRefusal, AttributeDefaultsDoNotMakeTheDocumentLarger) {
    QByteArray elements = "<r>";
    for (int i = 0; i < 5000; ++i)
        elements += "<e/>";
    elements += "</r>";
    const auto doctype = [](const char* attribute) {
        return "<!DOCTYPE r [<!ATTLIST e " + QByteArray(attribute) + " CDATA '" + QByteArray(100'000, 'x') +
               "'>]>";
    };
    for (const char* attribute : {"xmlns", "xmlns:p"}) {
        EXPECT_EQ(ErrorOf(doctype(attribute) + elements),
                  " (1): Namespace defaults make the document too large (Error)\n")
            << attribute;
    }

    const XmlFile file(doctype("a") + elements);
    CXmlDomDocument document;
    QString error;
    CXmlDomElement root;
    CXmlDomElement child;
    ASSERT_TRUE(document.Load(file.Path(), error)) << error.toStdString();
    ASSERT_TRUE(document.GetRootElement(root) && root.GetChildByName("e", child));
    EXPECT_FALSE(child.HasAttribute("a"));
}

TEST(XmlDomRefusal, TakesManyNamespacesThatAreWritten) {
    QByteArray content = "<r>";
    for (int i = 0; i < 50'000; ++i)
        content += "<e xmlns='http://example.org/a/long/namespace/address'/>";
    const XmlFile file(content + "</r>");
    CXmlDomDocument document;
    QString error;
    EXPECT_TRUE(document.Load(file.Path(), error)) << error.toStdString();
}

TEST(XmlDomRefusal, SurvivesDeepNesting) {
    QByteArray deep;
    for (int i = 0; i < 200'000; ++i)
        deep += "<a>";
    EXPECT_FALSE(ErrorOf(deep).isEmpty());
    for (int i = 0; i < 200'000; ++i)
        deep += "</a>";
    const XmlFile file(deep);
    CXmlDomDocument document;
    QString error;
    EXPECT_TRUE(document.Load(file.Path(), error)) << error.toStdString();
}

TEST(XmlDomRefusal, CountsAttributesAndTheirDefaults) {
    const auto attributes = [](int count) {
        QByteArray document = "<r";
        for (int i = 0; i < count; ++i)
            document += " a" + QByteArray::number(i) + "=''";
        return document + "/>";
    };
    const auto defaults = [](int count) {
        QByteArray document = "<!DOCTYPE r [<!ATTLIST r";
        for (int i = 0; i < count; ++i)
            document += " a" + QByteArray::number(i) + " CDATA ''";
        return document + ">]><r/>";
    };
    CXmlDomDocument document;
    QString error;
    EXPECT_TRUE(document.LoadXmlBytes(attributes(1024).toStdString(), error)) << error.toStdString();
    EXPECT_TRUE(document.LoadXmlBytes(defaults(256).toStdString(), error)) << error.toStdString();
    EXPECT_EQ(ErrorOf(attributes(1025)), " (1): Too many attributes (Error)\n");
    EXPECT_EQ(ErrorOf(defaults(257)), " (1): Too many attribute defaults (Error)\n");
}

TEST(XmlDomRefusal, GivesTheDecodersReasonForBadBytesAndPrintsNothing) {
    testing::internal::CaptureStderr();
    const QString error = ErrorOf("<?xml version='1.0' encoding='Shift_JIS'?>\n<r>\xff\xfe\xff</r>");
    EXPECT_TRUE(error.contains("input conversion failed")) << error.toStdString();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
