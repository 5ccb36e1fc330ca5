// stats and compare: what they print of files that are in order, and of those that are not.
#include "CliTesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// A group of two signals over an axis in steps of half a millisecond, a reference line and a hidden signal.
QByteArray Recording(const QByteArray& rows, const QByteArray& path = "Path, \"left\"") {
    return R"(<Analysis><DataDefinition><IndexSet Name="Time"><Unit UnitFactor="0.5"/></IndexSet>
        <VariablesDefinitions><TypedData Name="p" Type="Float" Description=')" +
           path + R"('><Unit Name="&#181;m" UnitFactor="0.25"/></TypedData>
        <TypedData Name="b" Type="Binary" Description="Pedal"><Unit/></TypedData></VariablesDefinitions>
        </DataDefinition><Groups><Group Name="Motion"><RefLine Name="Limit" Value="1"/><Line DataName="p"/>
        <Line DataName="b"/><Line DataName="p" DisplayGraph="0" DisplayConsole="0"/></Group></Groups><Data>)" +
           rows + "</Data></Analysis>";
}

class CliMeasure : public Cli {
protected:
    // Runs in the folder of the files, so that they are named as they are here.
    Outcome RunHere(const QString& command, QStringList files) {
        for (QString& file : files)
            file = Path(file);
        Outcome outcome = Run(command.split(" ") + files);
        for (std::string* text : {&outcome.out, &outcome.err})
            *text = QString::fromStdString(*text).replace(Folder() + '/', QString()).toStdString();
        outcome.err.resize(std::min(outcome.err.find("usage:"), outcome.err.size()));
        return outcome;
    }

    const QString m_Good = Write("good.xml", Recording("4,0\n12,1\nnan,1\n8,0\n4,1"));
    const QString m_Other = Write("other.xml", Recording("0,0\n4,0\n12,1\n1e3,1\n2,0"));
    const QString m_Still = Write("still.xml", Recording("0,0\n0,0", "Way"));
    const QString m_Broken = Write("broken.xml", "<Analysis>");
};

} // namespace

TEST_F(CliMeasure, StatsTellsTheFiguresOfEverySignalInEveryFormat) {
    const Outcome csv = RunHere("stats --format csv --while Pedal --to 3", {"good.xml", "other.xml"});
    EXPECT_EQ(
        csv,
        (Outcome{
            0,
            "file,group,signal,unit,from,to,count,first,last,difference,min,minAt,max,maxAt,mean,"
            "deviation,slope,switchedOn,switchedOff,timeOn,share\r\n"
            "good.xml,Motion,\"Path, \"\"left\"\"\",µm,1,2,1,3,,,3,1,3,1,3,0,,,,,\r\n"
            "good.xml,Motion,Pedal,,1,2,2,1,1,0,1,1,1,1,1,0,0,0,0,2,1\r\n"
            "other.xml,Motion,\"Path, \"\"left\"\"\",µm,2,3,2,3,250,247,3,2,250,3,126.5,123.5,494,,,,\r\n"
            "other.xml,Motion,Pedal,,2,3,2,1,1,0,1,2,1,2,1,0,0,0,0,2,1\r\n",
            ""}));
    const Outcome json = RunHere("stats --format json --from 2 --to 2", {"good.xml"});
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(json.out)).array().size(), 2);
    EXPECT_NE(json.out.find(R"("signal": "Path, \"left\"", "unit": "µm", "from": 2, "to": 2, "count": 0, )"
                            R"("first": null, "last": null, "difference": null, "min": null, "minAt": null, )"
                            R"("max": null, "maxAt": null, "mean": null, "deviation": null, "slope": null})"),
              std::string::npos)
        << json.out;
    const Outcome table = RunHere("stats", {"good.xml"});
    EXPECT_NE(table.out.find("\ngood.xml  Motion  Pedal          "), std::string::npos) << table.out;
    EXPECT_NE(table.out.find("           2            1       3    0.6\n"), std::string::npos) << table.out;
}

TEST_F(CliMeasure, CompareTellsTheDeviationsAndWhetherTheyAreKept) {
    const Outcome kept = RunHere("compare --format json --tolerance Pedal=1", {"good.xml", "other.xml"});
    EXPECT_EQ(
        kept.out,
        "[\n  {\"file\": \"other.xml\", \"group\": \"Motion\", \"signal\": \"Path, \\\"left\\\"\", "
        "\"unit\": \"µm\", \"largest\": 248, \"at\": 3, \"rms\": 124.00529222577559, "
        "\"tolerance\": null, \"kept\": true},\n"
        "  {\"file\": \"other.xml\", \"group\": \"Motion\", \"signal\": \"Pedal\", \"unit\": \"\", "
        "\"largest\": 1, \"at\": 1, \"rms\": 0.7745966692414834, \"tolerance\": 1, \"kept\": true}\n]\n");
    EXPECT_EQ(kept.code, 0) << kept.err;
    const Outcome broken =
        RunHere("compare --format csv --align Pedal --tolerance Pedal=1 --tolerance Pedal=0.5",
                {"good.xml", "other.xml", "broken.xml", "still.xml"});
    EXPECT_EQ(broken.out, "file,group,signal,unit,largest,at,rms,tolerance,kept\r\n"
                          "other.xml,Motion,\"Path, \"\"left\"\"\",µm,1.5,4,0.8660254037844386,,true\r\n"
                          "other.xml,Motion,Pedal,,0,1,0,0.5,true\r\n");
    EXPECT_EQ(broken.code, 3);
    EXPECT_EQ(RunHere("compare --tolerance Pedal=0.5", {"good.xml", "other.xml", "broken.xml"}).code, 4);
}

TEST_F(CliMeasure, NamesWhatIsWrongAndGoesOnWithTheRest) {
    const QStringList both{"good.xml", "still.xml"};
    Write("still2.xml", Read(m_Still));
    Write("alone.xml", Read(m_Good).replace("Motion", "Other"));
    Write("inch.xml", Read(m_Good).replace("&#181;m", "inch").replace("0.5", "0.2"));
    struct Case {
        int code;
        bool hasOutput;
        QString command; // with its options
        QStringList files;
        std::string error;
    };
    const std::string length =
        "tracelyn-cli: good.xml: 2 of its 5 samples stand beside one of still.xml, which has 2\n";
    for (const Case& row : std::vector<Case>{
             {3, true, "stats --from 2", both, "ERROR: still.xml: there is no sample 2, the last one is 1\n"},
             {3, true, "stats --while Pedal", both,
              "ERROR: still.xml: 'Pedal' is never on between the samples 0 and 1\n"},
             {3,
              false,
              "stats --while Way",
              {"still.xml"},
              "ERROR: still.xml: there is no on/off signal 'Way'\n"},
             {3, true, "stats", {"no.xml", "good.xml"}, "ERROR: Cannot read file: no.xml\n"},
             {1, false, "stats", {"no.xml"}, "ERROR: Cannot read file: no.xml\n"},
             {2, false, "stats --from 3 --to 2", both, "tracelyn-cli: --from 3 lies behind --to 2\n"},
             {2, false, "stats", {}, "tracelyn-cli: stats takes 1 file(s) or more, not 0\n"},
             {3, false, "compare", {"no.xml", "good.xml"}, "ERROR: Cannot read file: no.xml\n"},
             {2,
              false,
              "compare",
              {"good.xml", "./good.xml"},
              "tracelyn-cli: './good.xml' is the good recording itself\n"},
             {2, false, "compare --tolerance Motion=1", both,
              "tracelyn-cli: --tolerance: no signal 'Motion' is in good.xml and in a file to compare\n"},
             {2, false, "compare --tolerance Pedal", both,
              "tracelyn-cli: --tolerance: 'Pedal' is not allowed\n"},
             {2, false, "compare --tolerance Pedal=-1", both,
              "tracelyn-cli: --tolerance: 'Pedal=-1' is not allowed\n"},
             {2, false, "compare --tolerance Pedal=inf", both,
              "tracelyn-cli: --tolerance: 'Pedal=inf' is not allowed\n"},
             {3, false, "compare --align Pedal", both, "ERROR: still.xml: 'Pedal' is never on\n"},
             {3,
              true,
              "compare --tolerance Way=1",
              {"still.xml", "good.xml", "still2.xml"},
              "ERROR: good.xml: 'Way' of 'Motion' is missing\n" + length},
             {3,
              true,
              "compare",
              {"good.xml", "inch.xml"},
              "ERROR: inch.xml: 'Path, \"left\"' of 'Motion' is in 'inch', not in 'µm'\n"
              "tracelyn-cli: inch.xml: its samples are 0.2 apart, those of good.xml are 0.5 apart\n"},
             {3,
              false,
              "compare",
              {"good.xml", "alone.xml"},
              "ERROR: alone.xml: no signal is also in good.xml\n"}}) {
        const Outcome outcome = RunHere(row.command, row.files);
        EXPECT_EQ(std::tuple(outcome.code, !outcome.out.empty(), outcome.err),
                  std::tuple(row.code, row.hasOutput, row.error))
            << row.command.toStdString();
    }
}
