#include "CliTesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject Json(const Outcome& outcome) {
    QJsonParseError error;
    const QJsonObject json = QJsonDocument::fromJson(outcome.out, &error).object();
    EXPECT_EQ(error.error, QJsonParseError::NoError) << outcome.out.constData();
    return json;
}

// The values of these keys, which are all that the object has.
std::string Values(const QJsonObject& object, const QString& keys) {
    QJsonArray values;
    for (const QString& key : keys.split(' '))
        values += object.value(key);
    EXPECT_EQ(object.size(), values.size());
    return QJsonDocument(values).toJson(QJsonDocument::Compact).toStdString();
}

} // namespace

TEST_F(Cli, InfoTellsGroupsAndSetsAsJson) {
    const Outcome outcome = Run({"info", TestData("eight_types.xml")});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    const QJsonObject json = Json(outcome);
    EXPECT_EQ(json.keys(), (QStringList{"groups", "name", "results", "samples"}));
    EXPECT_EQ(json["name"], "Eight types");
    EXPECT_EQ(json["samples"], 3);
    EXPECT_EQ(json["results"], QJsonArray());

    std::vector<std::string> lines;
    for (const QJsonValue value : json["groups"].toArray()) {
        QJsonObject group = value.toObject();
        const QJsonArray sets = group.take("sets").toArray();
        lines.push_back(Values(group, "name displayType sizeRatio expanded separateSets inverted"));
        for (const QJsonValue set : sets)
            lines.push_back(Values(set.toObject(),
                                   "name kind unit unitOffset unitFactor precision color displayType "
                                   "ignoreForVerticalAutoScaling count min max"));
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
    for (const auto& [codes, names] : std::initializer_list<std::pair<const char*, const char*>>{
             {"--code 3 --code= --code 604180", ""},
             {"--code 60418", "Pressure"},
             {"--code=83206 --code 60418 --code x", "Pressure"},
             {"--code=47195 --code=60418", "Pressure Encoder"}}) {
        QStringList shown;
        const QJsonObject json =
            Json(Run(QString("info %1").arg(codes).split(' ') + QStringList{TestData("eight_types.xml")}));
        for (const QJsonValue set : json["groups"][1]["sets"].toArray())
            shown += set["name"].toString();
        EXPECT_EQ(shown.mid(4).join(" "), names) << codes;
    }
}

TEST_F(Cli, InfoReportsProblemsInOrderAndShowsWhatWasRead) {
    const QByteArray head = "<Analysis Name='A'><DataDefinition><IndexSet Name='t'><Unit/></IndexSet>"
                            "<VariablesDefinitions><Foo/>";
    struct Case {
        QByteArray xml;
        QByteArray err;
        qsizetype groups;
        QJsonArray codes;
    };
    for (const auto& [xml, error, groups, codes] :
         {Case{head + "</VariablesDefinitions></DataDefinition><Groups/></Analysis>",
               "ERROR: Invalid node name: Foo\nERROR: Missing node: Data\n",
               1,
               {3, 8}},
          Case{"<analysis/>", "ERROR: Invalid root name: analysis\n", 0, {2}},
          Case{head, "ERROR: Xml Parse error: %1 (1): ", 0, {1}},
          Case{"", "ERROR: Xml Parse error: %1 (", 0, {1}}}) {
        const QString path = Write("broken.xml", xml);
        const Outcome outcome = Run({"info", path});
        EXPECT_EQ(outcome.code, 3) << outcome.err.constData();
        EXPECT_TRUE(outcome.err.startsWith(QByteArray(error).replace("%1", path.toUtf8())))
            << outcome.err.constData();
        const QJsonObject json = Json(outcome);
        EXPECT_EQ(json["samples"], groups);
        EXPECT_EQ(json["groups"].toArray().size(), groups);
        QJsonArray found;
        QByteArray lines;
        for (const QJsonValue result : json["results"].toArray()) {
            found += result["code"];
            lines += "ERROR: " + result["text"].toString().trimmed().toUtf8() + "\n";
        }
        EXPECT_EQ(found, codes);
        EXPECT_EQ(outcome.err, lines);
    }
}

#ifdef Q_OS_LINUX
TEST_F(Cli, InfoFailsWhenItsOutputCannotBeWritten) {
    for (const QString& path : {Write("short.xml", "<a/>"), Sample("bend.xml")}) {
        const Outcome outcome = Run({"info", path}, Disk::Free, "/dev/full");
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(outcome.err.startsWith("ERROR: Cannot write standard output: "))
            << outcome.err.constData();
    }
}
#endif
