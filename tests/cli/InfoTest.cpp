#include "CliTesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// The values of these keys, which are all that the object has.
static std::string Values(const QJsonObject& object, const QString& keys) {
    QJsonArray values;
    for (const QString& key : keys.split(' '))
        values += object.value(key);
    EXPECT_EQ(object.size(), values.size());
    return QJsonDocument(values).toJson(QJsonDocument::Compact).toStdString();
}

TEST_F(Cli, InfoTellsGroupsAndSetsAsJson) {
    const std::string out = Run({"info", TestData("eight_types.xml")}).out;
    QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(out)).object();
    const QJsonArray groups = json.take("groups").toArray();
    EXPECT_EQ(Values(json, "name samples results"), R"(["Eight types",3,[]])");
    std::vector<std::string> lines;
    for (const QJsonValue value : groups) {
        QJsonObject group = value.toObject();
        const QJsonArray sets = group.take("sets").toArray();
        lines.push_back(Values(group, "name displayType sizeRatio expanded separateSets inverted"));
        const QString keys = "name kind unit unitOffset unitFactor precision color displayType "
                             "ignoreForVerticalAutoScaling count min max";
        for (const QJsonValue set : sets)
            lines.push_back(Values(set.toObject(), keys));
    }
    const std::vector<std::string> expected{
        R"(["Time",2,1,true,false,false])",
        R"(["Time","index","ms",0.5,2,1,"0xFF8080",3,false,1,0,2])",
        R"(["Motion",3,3,true,false,true])",
        R"(["Limit","fixed","",0,1,6,"0x602020",3,true,1,2.5,2.5])",
        R"(["Path","typed","mm",0.25,2,3,"0x00FF00",3,true,3,-1.25,3])",
        R"(["Speed","typed","µm",0,1,0,"0x1772F8",2,false,3,-7,8])",
        R"(["Error","typed","",0,1,6,"0xFFCA82",1,false,3,-100,100])",
        R"(["Bits",3,1,false,true,false])",
        R"(["Byte","typed","",0,1,0,"0x00FF00",3,false,3,0,255])",
        R"(["Step","typed","",0,1,0,"0xFFCA82",3,false,3,3,5])",
        R"(["Pedal","binary","",0,1,0,"0xAAAA00",3,false,3,0,1])",
        R"(["Endless","typed","",0,1,6,"0x00FFFF",0,false,3,1,null])",
    };
    EXPECT_EQ(lines, expected);
}

TEST_F(Cli, InfoShowsWhatTheHighestCodeGrants) {
    const auto shows = [this](const QStringList& codes, const char* set) {
        return Run(QStringList{"info"} + codes + QStringList{TestData("eight_types.xml")}).out.find(set) !=
               std::string::npos;
    };
    EXPECT_FALSE(shows({"--code=3", "--code="}, "Pressure"));
    EXPECT_TRUE(shows({"--code", "60418"}, "Pressure"));
    EXPECT_FALSE(shows({"--code=83206", "--code=60418"}, "Encoder"));
    EXPECT_TRUE(shows({"--code=47195", "--code=60418"}, "Encoder"));
    const QString file = TestData("eight_types.xml");
    EXPECT_EQ(
        Run({"info", "--code=3", "--code=60418", "--code=", file}),
        (Outcome{0, Run({"info", "--code=60418", file}).out,
                 "tracelyn-cli: the code '3' grants nothing\ntracelyn-cli: the code '' grants nothing\n"}));
}

TEST_F(Cli, InfoCutsALongNameBetweenTwoCharacters) {
    QByteArray document = Read(TestData("eight_types.xml"));
    const QByteArray begin(4999, 'x');
    document.replace("Description=\"Speed\"", "Description=\"" + begin + "\U0001F527\"");
    const Outcome outcome = Run({"info", Write("long.xml", document)});
    EXPECT_NE(outcome.out.find(("\"name\": \"" + begin + "\"").toStdString()), std::string::npos);
    EXPECT_EQ(outcome.err, "ERROR: Unknown error: A Description of 5001 characters is cut off\n");
}
