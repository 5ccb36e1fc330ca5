#include "XmlDomTesting.h"

#include <QHash>

#include <limits>

TEST(XmlDomElement, GivesAttributesOrTheirDefaults) {
    const CXmlDomElement r =
        RootOf(QString::fromUtf8("<r a='ä &lt;&#x20AC;' empty='' p:q='ns' xmlns:p='u'/>"));
    bool found = false;
    EXPECT_EQ(r.GetAttribute("a", "def", &found), QString::fromUtf8("ä <€"));
    EXPECT_TRUE(found);
    EXPECT_EQ(r.GetAttribute("empty", "def", &found), "");
    EXPECT_TRUE(found);
    EXPECT_EQ(r.GetAttribute("missing", "def", &found), "def");
    EXPECT_FALSE(found);
    EXPECT_EQ(r.GetAttribute("p:q"), "ns");
    EXPECT_FALSE(r.HasAttribute("q"));
    EXPECT_FALSE(r.HasAttribute("A"));
    EXPECT_TRUE(r.HasAttribute("empty"));
    EXPECT_EQ(r.GetAttributeRaw("a"), "ä <€");
    EXPECT_EQ(r.GetAttributeRaw("missing"), "");
}

TEST(XmlDomElement, ReadsAttributesAsNumbersAndTruths) {
    struct Row {
        const char* text;
        int32_t integer; // read with default 1
        float number;    // read with default -1
        bool boolean;    // read with either default
        bool isTrue;
    };
    for (const Row& row :
         std::initializer_list<Row>{{"0", 0, 0.0F, false, false},
                                    {"1", 1, 1.0F, true, true},
                                    {"false", 1, -1.0F, false, false},
                                    {"False", 1, -1.0F, true, false},
                                    {"TRUE", 1, -1.0F, true, true},
                                    {"", 1, -1.0F, true, false},
                                    {"0x10", 16, 16.0F, true, false},
                                    {"010", 8, 10.0F, true, false},
                                    {"12px", 1, -1.0F, true, false},
                                    {" 12", 12, 12.0F, true, false},
                                    {"12 ", 1, -1.0F, true, false},
                                    {"4000000000", std::numeric_limits<int32_t>::max(), 4e9F, true, false},
                                    {"2.5", 1, 2.5F, true, false},
                                    {"1e400", 1, std::numeric_limits<float>::infinity(), true, false}}) {
        const CXmlDomElement r = RootOf(QStringLiteral("<r a='%1'/>").arg(row.text));
        for (const bool def : {false, true}) {
            bool found = false;
            EXPECT_EQ(r.GetAttributeBool("a", def, &found), row.boolean) << row.text;
            EXPECT_TRUE(found);
            EXPECT_EQ(r.GetAttributeBool("missing", def, &found), def);
            EXPECT_FALSE(found);
        }
        bool found = false;
        EXPECT_EQ(r.GetAttributeInt("a", 1, &found), row.integer) << row.text;
        EXPECT_TRUE(found);
        EXPECT_EQ(r.GetAttributeFloat("a", -1, &found), row.number) << row.text;
        EXPECT_TRUE(found) << "presence, not readability";
        EXPECT_EQ(r.IsAttributeTrue("a"), row.isTrue) << row.text;
        EXPECT_EQ(r.GetAttributeInt("missing", 7, &found), 7);
        EXPECT_FALSE(found);
        EXPECT_EQ(r.GetAttributeFloat("missing", 7, &found), 7.0F);
        EXPECT_FALSE(found);
        EXPECT_FALSE(r.IsAttributeTrue("missing"));
    }
}

TEST(XmlDomElement, TextIsTheFirstChildIfThatIsText) {
    for (const auto& [xml, expected] : std::initializer_list<std::pair<const char*, const char*>>{
             {"<r>1;2\n3;4\n</r>", "1;2\n3;4\n"},
             {"<r>\n 1;2 \n</r>", "\n 1;2 \n"},
             {"<r/>", ""},
             {"<r> \t\n </r>", ""},
             {"<r><!--c-->1</r>", ""},
             {"<r>  <!--c-->1</r>", ""},
             {"<r><a/>1</r>", ""},
             {"<r>1<a/>2</r>", "1"},
             {"<r><![CDATA[1]]></r>", ""},
             {"<r>1<![CDATA[2]]></r>", "1"},
             {"<r>a&amp;b&#65;\r\nc\rd</r>", "a&bA\nc\nd"}}) {
        const CXmlDomElement r = RootOf(xml);
        EXPECT_EQ(r.GetText(), expected) << xml;
        EXPECT_EQ(r.GetTextUtf8(), expected) << xml;
    }
}

TEST(XmlDomElement, FindsTheFirstChildElementOfAName) {
    const CXmlDomElement r =
        RootOf("<r><x><a n='0'/></x><!--a--><a n='1'/><a n='2'/><p:b xmlns:p='u' n='3'/></r>");
    CXmlDomElement child;
    ASSERT_TRUE(r.GetChildByName("a", child));
    EXPECT_EQ(child.GetAttributeInt("n"), 1);
    EXPECT_FALSE(r.GetChildByName("A", child));
    EXPECT_FALSE(r.GetChildByName("b", child));
    EXPECT_EQ(child.GetAttributeInt("n"), 1) << "a miss leaves the wrapper as it was";
    ASSERT_TRUE(r.GetChildByName("p:b", child));
    EXPECT_EQ(child.GetAttributeInt("n"), 3);
}

TEST(XmlDomElement, StopsTheProgramWhenItIsEmptyOrHasNoName) {
    const CXmlDomElement empty;
    EXPECT_DEATH(empty.GetNodeName(), "p!=0");
    EXPECT_DEATH(empty.GetText(), "p!=0");
    EXPECT_DEATH(empty.GetAttribute("a"), "p!=0");
    EXPECT_DEATH(RootOf("<r/>").HasAttribute(nullptr), "bstrAttributeName != NULL");
}
