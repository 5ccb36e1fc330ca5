#include "XmlDomNodeIterator.h"
#include "XmlDomTesting.h"
#include "XmlDomText.h"

#include <utility>

TEST(XmlDomDocument, FindsTheRootBehindWhatComesBefore) {
    const CXmlDomElement root =
        RootOf("<?xml version='1.0'?>\n<!-- c --><?pi x?>\n<!DOCTYPE r [<!ELEMENT r ANY>]>\n<r/>");
    EXPECT_EQ(root.GetNodeName(), "r");
}

TEST(XmlDomDocument, SaysThatAFileDoesNotExist) {
    CXmlDomDocument document;
    const QTemporaryDir folder;
    for (const QString& name :
         {QString(), folder.filePath("missing.xml"), folder.filePath("no/such/folder.xml")}) {
        QString error;
        EXPECT_FALSE(document.Load(name, error));
        EXPECT_EQ(error, "File does not exist");
    }
    CXmlDomElement root;
    EXPECT_DEATH(document.GetRootElement(root), "m_bCreated"); // no parser object was made
}

TEST(XmlDomDocument, NamesFileLineAndReasonOfTheFirstFault) {
    const XmlFile file("<r>\n<a>\n</b>\n</r>&");
    CXmlDomDocument document;
    QString error;
    EXPECT_FALSE(document.Load(file.Path(), error));
    EXPECT_EQ(error, file.Path() + " (3): Opening and ending tag mismatch: a line 2 and b (Error)\n");
    EXPECT_FALSE(document.LoadXml("<r>\n<a>\n</b>\n</r>&", error));
    EXPECT_EQ(error, "[string input] (3): Opening and ending tag mismatch: a line 2 and b (Error)\n");
    for (const auto* text :
         {"", " ", "no xml", "<r>", "<r", "<r/><r/>", "<r a='1' a='2'/>", "<r>&undefined;</r>"})
        EXPECT_FALSE(document.LoadXml(text, error)) << text;
    CXmlDomElement root;
    EXPECT_FALSE(document.GetRootElement(root)) << "a failed load leaves nothing behind";
}

TEST(XmlDomDocument, ReportsAFileThatExistsButCannotBeReadAsAParseError) {
    const QTemporaryDir folder;
    CXmlDomDocument document;
    QString error;
    EXPECT_FALSE(document.Load(folder.path(), error));
    EXPECT_TRUE(error.startsWith(folder.path() + " (0): ") && error.endsWith(" (Error)\n"))
        << error.toStdString();
    EXPECT_GT(error.size(), (folder.path() + " (0):  (Error)\n").size());
}

TEST(XmlDomDocument, OpensFilesWithAnyName) {
    for (const auto& name :
         {u"Körper Ä.xml", u"压弯 \U0001F527.xml", u"a%20b#c&d 100%1%2.xml", u"http:x.xml"}) {
        const XmlFile file("<r/>", QString::fromUtf16(name));
        CXmlDomDocument document;
        QString error;
        EXPECT_TRUE(document.Load(file.Path(), error)) << error.toStdString();
        const XmlFile bad("<r>", QString::fromUtf16(name));
        EXPECT_FALSE(document.Load(bad.Path(), error));
        EXPECT_TRUE(error.startsWith(bad.Path() + " (1): ")) << error.toStdString();
    }
}

TEST(XmlDomDocument, WrappersOutliveTheDocumentAndItsNextLoad) {
    CXmlDomElement root;
    {
        CXmlDomDocument document;
        QString error;
        ASSERT_TRUE(document.LoadXml("<r>first</r>", error));
        ASSERT_TRUE(document.GetRootElement(root));
        ASSERT_TRUE(document.LoadXml("<r>second</r>", error));
    }
    EXPECT_EQ(root.GetTextUtf8(), "first");
}

TEST(XmlDomDocument, KeepsAHugeTextWhole) {
    QByteArray content = "<r><Data>";
    while (content.size() < 20'000'000)
        content += "1;-2.5;3e4;0\r\n";
    content += "end</Data></r>";
    const XmlFile file(content);
    CXmlDomDocument document;
    QString error;
    ASSERT_TRUE(document.Load(file.Path(), error)) << error.toStdString();
    CXmlDomElement root;
    CXmlDomElement data;
    ASSERT_TRUE(document.GetRootElement(root) && root.GetChildByName("Data", data));
    QByteArray expected = content.sliced(9, content.size() - 9 - 11);
    expected.replace("\r\n", "\n");
    EXPECT_TRUE(data.GetTextUtf8() == std::string_view(expected.constData(), std::size_t(expected.size())));
}

TEST(XmlDomDocument, WalksChildrenInOrderWithoutWhiteSpace) {
    const CXmlDomElement root =
        RootOf("<r>\n <a/> text <!--c--><p:b xmlns:p='u'/>\t<![CDATA[ ]]><?pi x?>\n</r>");
    CXmlDomNodeIterator iterator;
    EXPECT_FALSE(iterator.HasCurrent());
    QStringList seen;
    for (root.GetChildNodes(iterator); iterator.HasCurrent(); iterator.Next()) {
        CXmlDomNode node;
        iterator.GetNode(node);
        seen << QString::number(iterator.GetNodeType()) + node.GetNodeName();
    }
    EXPECT_EQ(seen, (QStringList{"1a", "3#text", "8#comment", "1p:b", "4#cdata-section", "7pi"}));
}

TEST(XmlDomDocument, IteratorGivesElementsAndTextsToTheirWrappersOnly) {
    CXmlDomNodeIterator iterator;
    RootOf("<r> text &amp; &#x41;<a/></r>").GetChildNodes(iterator);
    CXmlDomText text;
    CXmlDomElement element;
    iterator.GetText(text);
    EXPECT_EQ(text.GetText(), " text & A");
    EXPECT_DEATH(iterator.GetElement(element), "SUCCEEDED\\(hr\\)");
    iterator.Next();
    iterator.GetElement(element);
    EXPECT_EQ(element.GetNodeName(), "a");
    EXPECT_DEATH(iterator.GetText(text), "SUCCEEDED\\(hr\\)");
    iterator.Next();
    EXPECT_FALSE(iterator.HasCurrent());
    EXPECT_DEATH(iterator.Next(), "p!=0");
}

TEST(XmlDomDocument, SavesWhatItRead) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("Kopie ä.xml");
    CXmlDomDocument document;
    QString error;
    ASSERT_TRUE(document.LoadXml(QString::fromUtf8("<r a='ä&lt;'>€<b/> x</r>"), error));
    ASSERT_TRUE(document.Save(path));
    CXmlDomDocument copy;
    ASSERT_TRUE(copy.Load(path, error)) << error.toStdString();
    CXmlDomElement root;
    ASSERT_TRUE(copy.GetRootElement(root));
    EXPECT_EQ(root.GetAttribute("a"), QString::fromUtf8("ä<"));
    EXPECT_EQ(root.GetText(), QString::fromUtf8("€"));
    EXPECT_FALSE(document.Save(folder.filePath("missing/copy.xml")));
    EXPECT_DEATH(document.Save(QString()), "path");
}
