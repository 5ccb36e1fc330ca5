#include "XmlDomTesting.h"
#include "xmldom/XmlDomNode.h"

TEST(XmlDomDocument, NamesFileLineAndReasonOfTheFirstFault) {
    const QByteArray bad = "<r>\n<a>\n</b>\n</r>&";
    const QString reason = " (3): Opening and ending tag mismatch: a line 2 and b (Error)\n";
    const XmlFile file(bad);
    CXmlDomDocument document;
    QString error;
    EXPECT_FALSE(document.Load(file.Path() + "/no/such/file", error));
    EXPECT_EQ(error, "File does not exist");
    CXmlDomElement root;
    EXPECT_DEATH(document.GetRootElement(root), "m_bCreated"); // no parser object was made
    EXPECT_FALSE(document.Load(file.Path(), error));
    EXPECT_EQ(error, file.Path() + reason);
    EXPECT_EQ(ErrorOf(bad), "[string input]" + reason);
    const QTemporaryDir folder;
    EXPECT_FALSE(document.Load(folder.path(), error)) << "exists but cannot be read";
    EXPECT_TRUE(error.startsWith(folder.path() + " (0): ") && error.endsWith(" (Error)\n"));
    for (const char* text : {"", " ", "<r>", "<r", "<r/><r/>", "<r a='1' a='2'/>", "<r>&undefined;</r>"})
        EXPECT_NE(ErrorOf(text), "") << text;
}

TEST(XmlDomDocument, WalksChildrenInOrderWithoutWhiteSpace) {
    CXmlDomNodeIterator iterator;
    QStringList seen;
    RootOf("<!DOCTYPE r [<!ELEMENT r ANY>]>\n<r>\n <a/> text &amp; <!--c--><p:b xmlns:p='u'/>\t"
           "<![CDATA[ ]]><?pi x?>\n</r>")
        .GetChildNodes(iterator);
    for (; iterator.HasCurrent(); iterator.Next()) {
        CXmlDomNode node;
        iterator.GetNode(node);
        seen << QString::number(iterator.GetNodeType()) + node.GetNodeName();
        CXmlDomElement element;
        if (seen.back() == "3#text") {
            EXPECT_DEATH(iterator.GetElement(element), "SUCCEEDED\\(hr\\)");
        }
    }
    EXPECT_EQ(seen, (QStringList{"1a", "3#text", "8#comment", "1p:b", "4#cdata-section", "7pi"}));
    EXPECT_DEATH(iterator.Next(), "p!=0");
}
