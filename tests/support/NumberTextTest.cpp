#include "support/NumberText.h"
#include "PlainNumbers.h"
#include "Testing.h"

#include <QByteArrayList>

// Random texts are what the fuzzer and the tests of the rows try.
TEST(NumberText, ReadsAsTheCLibrary) {
    const QByteArray texts =
#ifndef __MINGW32__ // whose strtod reads on after a second sign and wants no closing bracket
        "-+1|--1|- 1|-.|nan(!)|"
#endif
        "| |-|+|+-1|12.5| 7\r|abc|4000000000|-4000000000|2147483647|2147483648|-2147483648|"
        "-2147483649|99999999999999999999999999|010|08|-0|0x|0xg|0x10|-0x10|+0X1f|0x-5|0x+5|0x 5|x10|00x10|"
        "12px|12 |\n12|80000000|FF00FF|0xFFFFFFFF|.|.5|5.|1e|1e+|1e5|1.5E-3x|e5|1e400|-1e400|1e-400|"
        "-1e-400|4.9e-324|2e-324|1e38|3.4028236e38|1e-46|0e999999999999|0.0000e-999|1e99999999999999999999|"
        "1e-99999999999999999999|0x1.8p3|0x.8|0x.|0x.p1|0x1p|0x1p+|0x1p+-5|-0xf.8P+-2500|0x1p-+5|0x1p++5|"
        "0x1p--5|1e+-5|1e-+5|0x1p99999999999|0x1p-99999999999|0x1p1024|"
        "0x1p-1075|0x1p-1074|0x1.fffffffffffff8p1023|0x1.00000000000008p0|0xinf|0xnan|inf|-INF|infinity|"
        "InFiNiTyX|infinit|nan|-nan|+NAN|nan()|nan(12ab_)|nan(12|-infx|0,5|1.7976931348623159e308|"
        "2.2250738585072011e-308|\xC2\xA0";
    for (const QByteArray& text : texts.split('|'))
        EXPECT_EQ(DifferenceFromPlainNumber(text.toStdString()), "");
    const std::string zeros(400, '0');
    for (const std::string& text : {"0." + zeros + "1e400", "1" + zeros + "e-400", "1" + zeros,
                                    "." + zeros + "1", "0x" + std::string(300, 'f') + "p-100"})
        EXPECT_EQ(DifferenceFromPlainNumber(text), "");
}

TEST(NumberText, StopsAtTheEndOfTheViewAndNotOfTheTextAroundIt) {
    const std::string_view row = "12;345;0x1F;1.5e3";
    EXPECT_EQ(support::ParseIntegerField(row.substr(3, 2)), 34);
    EXPECT_EQ(support::ParseIntegerAttribute(row.substr(7, 3)), 1);
    EXPECT_EQ(support::ParseIntegerAttribute(row.substr(7, 2)), std::nullopt);
    EXPECT_EQ(support::ParseFloatField(row.substr(12, 4)), 1.5F);
    EXPECT_EQ(support::ParseFloatAttribute(row.substr(12, 3)), 1.5F);
}
