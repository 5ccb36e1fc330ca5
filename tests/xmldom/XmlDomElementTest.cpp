#include "XmlDomTesting.h"

TEST(XmlDomElement, GivesAttributesOrTheirDefaults) {
    const CXmlDomElement r = RootOf("<r a='ä &lt;&#x20AC;' empty='' p:q='ns' xmlns:p='u'/>");
    for (const auto& [name, value] : {std::pair{"empty", ""}, {"A", "def"}}) {
        bool found = false;
        EXPECT_EQ(r.GetAttribute(name, "def", &found), value);
        EXPECT_EQ(found, *value == '\0');
    }
    EXPECT_EQ(r.GetAttributeFloat("A", 7), 7.0F);
    EXPECT_EQ(r.GetAttribute("p:q"), "ns");
    EXPECT_FALSE(r.HasAttribute("q"));
    EXPECT_EQ(r.GetAttributeRaw("a"), "ä <€");
    EXPECT_DEATH(r.HasAttribute(nullptr), "bstrAttributeName != NULL");
    EXPECT_DEATH(CXmlDomElement().GetText(), "p!=0");
}

TEST(XmlDomElement, ReadsAttributesAsNumbersAndTruths) {
    // The integer with default 1, the number with default -1, the boolean with either, and whether it is
    // true.
    using Row = std::tuple<const char*, int32_t, float, bool, bool>;
    for (const auto& [text, integer, number, boolean, isTrue] :
         {Row{"0", 0, 0.0F, false, false}, Row{"1", 1, 1.0F, true, true},
          Row{"false", 1, -1.0F, false, false}, Row{"False", 1, -1.0F, true, false},
          Row{"TRUE", 1, -1.0F, true, true}, Row{"", 1, -1.0F, true, false},
          Row{"0x10", 16, 16.0F, true, false}, Row{"010", 8, 10.0F, true, false},
          Row{"12px", 1, -1.0F, true, false}, Row{" 12", 12, 12.0F, true, false},
          Row{"12 ", 1, -1.0F, true, false}, Row{"4000000000", INT32_MAX, 4e9F, true, false},
          Row{"2.5", 1, 2.5F, true, false}, Row{"1e400", 1, HUGE_VALF, true, false}}) {
        const CXmlDomElement r = RootOf("<r a='" + QByteArray(text) + "'/>");
        EXPECT_EQ(r.GetAttributeInt("a", 1), integer) << text;
        EXPECT_EQ(r.GetAttributeFloat("a", -1), number) << text;
        for (const bool def : {false, true})
            EXPECT_EQ(r.GetAttributeBool("a", def), boolean) << text;
        EXPECT_EQ(r.IsAttributeTrue("a"), isTrue) << text;
    }
}

TEST(XmlDomElement, TextIsTheFirstChildIfThatIsText) {
    using Case = std::pair<const char*, const char*>;
    for (const auto& [xml, expected] :
         {Case{"<r>\n 1;2 \n</r>", "\n 1;2 \n"}, Case{"<r/>", ""}, Case{"<r> \t\n </r>", ""},
          Case{"<r>  <!--c-->1</r>", ""}, Case{"<r><a/>1</r>", ""}, Case{"<r>1<a/>2</r>", "1"},
          Case{"<r><![CDATA[1]]></r>", ""}, Case{"<r>1<![CDATA[2]]></r>", "1"},
          Case{"<r>a&amp;b&#65;\r\nc\rd</r>", "a&bA\nc\nd"}})
        EXPECT_EQ(RootOf(xml).GetText(), expected) << xml;
}
