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

// The keys' values without blanks, "typed 3 null".
std::string Values(const QJsonObject& object, std::initializer_list<const char*> keys) {
    EXPECT_EQ(object.size(), static_cast<qsizetype>(keys.size()));
    QJsonArray values;
    for (const char* key : keys)
        values += object.value(QLatin1String(key));
    return QJsonDocument(values).toJson(QJsonDocument::Compact).toStdString();
}

QStringList SetNames(const QJsonObject& json) {
    QStringList names;
    for (const QJsonValue group : json["groups"].toArray()) {
        for (const QJsonValue set : group["sets"].toArray())
            names += set["name"].toString();
    }
    return names;
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
        lines.push_back(
            Values(group, {"name", "displayType", "sizeRatio", "expanded", "separateSets", "inverted"}));
        for (const QJsonValue set : sets) {
            lines.push_back(Values(set.toObject(),
                                   {"name", "kind", "unit", "unitOffset", "unitFactor", "precision", "color",
                                    "displayType", "ignoreForVerticalAutoScaling", "count", "min", "max"}));
        }
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
    const QStringList all{"Time", "Limit", "Path", "Speed", "Error", "Byte", "Step", "Pedal", "Endless"};
    const auto with = [&](const QStringList& more) { return all.mid(0, 5) + more + all.mid(5); };
    for (const auto& [codes, names] : std::initializer_list<std::pair<QStringList, QStringList>>{
             {{"--code", "3", "--code=", "--code", "604180"}, all},
             {{"--code", "60418"}, with({"Pressure"})},
             {{"--code=83206", "--code", "60418", "--code", "x"}, with({"Pressure"})},
             {{"--code=47195", "--code=60418"}, with({"Pressure", "Encoder"})}}) {
        const Outcome outcome = Run(QStringList{"info"} + codes + QStringList{TestData("eight_types.xml")});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(SetNames(Json(outcome)), names) << codes.join(" ").toStdString();
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
    for (const Case& expected : {Case{head + "</VariablesDefinitions></DataDefinition><Groups/></Analysis>",
                                      "ERROR: Invalid node name: Foo\nERROR: Missing node: Data\n",
                                      1,
                                      {3, 8}},
                                 Case{"<analysis/>", "ERROR: Invalid root name: analysis\n", 0, {2}},
                                 Case{head, "ERROR: Xml Parse error: %1 (1): ", 0, {1}},
                                 Case{"", "ERROR: Xml Parse error: %1 (", 0, {1}}}) {
        const QString path = Write("broken.xml", expected.xml);
        const Outcome outcome = Run({"info", path});
        EXPECT_EQ(outcome.code, 3) << outcome.err.constData();
        const QByteArray err = QByteArray(expected.err).replace("%1", path.toUtf8());
        EXPECT_EQ(outcome.err.left(err.size()), err);
        EXPECT_TRUE(outcome.err.endsWith('\n') && !outcome.err.contains("\n\n"));
        EXPECT_EQ(outcome.err.count('\n'), expected.codes.size());

        const QJsonObject json = Json(outcome);
        EXPECT_EQ(json["samples"], expected.groups);
        EXPECT_EQ(json["groups"].toArray().size(), expected.groups);
        QJsonArray codes;
        QByteArray texts;
        for (const QJsonValue result : json["results"].toArray()) {
            codes += result["code"];
            texts += "ERROR: " + result["text"].toString().trimmed().toUtf8() + "\n";
        }
        EXPECT_EQ(codes, expected.codes);
        EXPECT_EQ(texts, outcome.err);
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
