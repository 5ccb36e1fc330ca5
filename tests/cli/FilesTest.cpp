// What goes in and out of the tool as files.
#include "CliTesting.h"

TEST_F(Cli, CsvWritesScaledValuesAlsoOverAnExistingFile) {
    const QString out = Write("out.csv", QByteArray(100'000, 'x'));
    EXPECT_EQ(Run({"csv", TestData("eight_types.xml"), out}), (Outcome{0, "", ""}));
    EXPECT_EQ(Read(out), "\"Limit\"\r\n2.500000\r\n\r\n"
                         "\"Time\",\"Path\",\"Speed\",\"Error\",\"Byte\",\"Step\",\"Pedal\",\"Endless\"\r\n"
                         "1.0,1.500,-7,100.000000,255,3,0,1.000000\r\n"
                         "3.0,-2.000,8,-100.000000,1,4,1,inf\r\n"
                         "5.0,6.500,0,0.000000,0,5,1,nan\r\n");

    EXPECT_EQ(Run({"csv", Write("broken.xml", "<Analysis>"), out}).code, 3);
    EXPECT_EQ(Read(out), "\r\n\r\n\r\n\r\n");
    EXPECT_EQ(Files(), "broken.xml out.csv");
}

TEST_F(Cli, PackAndExpandGiveTheDocumentBack) {
    const QString packed = Path("packed.PAF");
    const QString expanded = Path("expanded.Xml");
    for (const QString& xml : {Sample("bend.xml"), TestData("eight_types.xml"), Write("Größe µ.xml", "<a/>"),
                               Write("no.xml", "")}) {
        EXPECT_EQ(Run({"pack", xml, packed}), (Outcome{0, "", ""})) << xml.toStdString();
        EXPECT_EQ(Run({"expand", packed, expanded}), (Outcome{0, "", ""})) << xml.toStdString();
        EXPECT_EQ(Read(expanded), Read(xml)) << xml.toStdString();
        EXPECT_EQ(Read(packed).left(4), "PK\x03\x04");
        const Outcome plain = Run({"info", expanded});
        const Outcome compressed = Run({"info", packed});
        EXPECT_EQ(plain.code, compressed.code);
        EXPECT_TRUE(plain.code == 3 || plain.out == compressed.out) << xml.toStdString();
    }
}

TEST_F(Cli, FailsWithOneLineWhenNothingCanBeRead) {
    const QByteArray bend = Read(Sample("bend01.paf"));
    const QByteArray expanding = "ERROR: Problem expanding analysis file\n";
    QDir(Path("")).mkdir("folder.xml");
    struct Case {
        QString path;
        QByteArray err; // %1 stands for the path
    };
    for (const auto& [path, err] :
         {Case{Path("no.xml"), "ERROR: Cannot read file: %1\n"},
          Case{Path("folder.xml"), "ERROR: Cannot read file: %1\n"},
          Case{Write("a.txt", "<Analysis/>"), "ERROR: Unknown file extension: %1\n"},
          Case{Write("paf", bend), "ERROR: Unknown file extension: %1\n"}, Case{Path("no.paf"), expanding},
          Case{Write("empty.paf", ""), expanding},
          Case{Write("cut.paf", bend.left(bend.size() / 2)), expanding},
          Case{Write("head.paf", bend.left(40)), expanding},
          Case{Write("text.PAF", "<Analysis/>"), expanding}}) {
        const std::string before = Files();
        for (const QStringList& arguments :
             {QStringList{"info", path}, {"csv", path, Path("out")}, {"render", path, Path("out")}}) {
            EXPECT_EQ(Run(arguments), (Outcome{1, "", QByteArray(err).replace("%1", path.toUtf8())}))
                << arguments[0].toStdString();
        }
        EXPECT_EQ(Files(), before);
    }
    EXPECT_EQ(Run({"expand", Path("cut.paf"), Path("out")}), (Outcome{1, "", expanding}));
    EXPECT_EQ(Run({"pack", Path("no.xml"), Path("out")}),
              (Outcome{1, "", "ERROR: Cannot read file: " + Path("no.xml").toUtf8() + "\n"}));
}

TEST_F(Cli, AContainerWithoutADocumentIsOneThatDoesNotLoad) {
    const QString path =
        Write("other.paf", Read(Sample("bend01.paf")).replace("tmpandat.bin", "tmpandat.bak"));
    EXPECT_EQ(Run({"expand", path, Path("out")}),
              (Outcome{1, "", "ERROR: Problem expanding analysis file\n"}));
    EXPECT_EQ(Files(), "other.paf");
    EXPECT_EQ(Run({"csv", path, Path("out")}),
              (Outcome{3, "", "ERROR: Xml Parse error: File does not exist\n"}));
    EXPECT_EQ(Files(), "other.paf out");
}

TEST_F(Cli, LeavesNoFileBehindThatItCannotWriteWhole) {
    Write("plain", "");
    QDir(Path("")).mkdir("folder");
    const std::string before = Files();
    const auto expectFailure = [&](const Outcome& outcome, const QByteArray& err) {
        EXPECT_EQ(outcome.code, 1) << err.constData();
        EXPECT_EQ(outcome.err.left(err.size()), err);
        EXPECT_EQ(outcome.err.indexOf('\n'), outcome.err.size() - 1);
        EXPECT_EQ(Files(), before);
    };
    for (const QStringList& command : {QStringList{"csv", Sample("bend.xml")},
                                       {"csv", TestData("eight_types.xml")},
                                       {"render", Sample("bend.xml")},
                                       {"pack", Sample("bend.xml")},
                                       {"expand", Sample("bend01.paf")}}) {
        QStringList targets{Path("folder"), Path("missing/out"), Path("plain/out")};
#ifdef Q_OS_LINUX
        targets += "/dev/full";
#endif
        for (const QString& target : targets)
            expectFailure(Run(command + QStringList{target}),
                          "ERROR: Cannot write " + target.toUtf8() + ": ");
    }
#ifdef Q_OS_UNIX
    const QString existing = Write("plain", "as it was");
    for (const auto& [command, error] : std::initializer_list<std::pair<QStringList, QByteArray>>{
             {{"csv", Sample("bend.xml")}, "Cannot write " + existing.toUtf8() + ": "},
             {{"render", Sample("bend.xml")}, "Cannot write " + existing.toUtf8() + ": "},
             {{"pack", Sample("bend.xml")}, "Problem packing analysis file\n"},
             {{"expand", Sample("bend01.paf")}, "Problem expanding analysis file\n"}}) {
        expectFailure(Run(command + QStringList{existing}, Disk::Full), "ERROR: " + error);
        EXPECT_EQ(Read(existing), "as it was") << command[0].toStdString();
    }
    EXPECT_EQ(Run({"csv", Sample("bend.xml"), existing}, Disk::Killing).code, -1);
    EXPECT_EQ(Read(existing), "as it was");
#endif
}
