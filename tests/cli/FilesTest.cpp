// What goes in and out of the tool as files.
#include "CliTesting.h"

#include <filesystem>

#ifdef Q_OS_LINUX
#include <QProcess>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

TEST_F(Cli, CsvWritesScaledValuesAlsoOverAnExistingFile) {
    const QString out = Write("out.csv", QByteArray(100'000, 'x'));
    EXPECT_EQ(Run({"csv", TestData("eight_types.xml"), out}), (Outcome{0, "", ""}));
    EXPECT_EQ(Read(out).toStdString(),
              "\"Limit\"\r\n2.500000\r\n\r\n"
              "\"Time\",\"Path\",\"Speed\",\"Error\",\"Byte\",\"Step\",\"Pedal\",\"Endless\"\r\n"
              "1.0,1.500,-7,100.000000,255,3,0,1.000000\r\n"
              "3.0,-2.000,8,-100.000000,1,4,1,inf\r\n"
              "5.0,6.500,0,0.000000,0,5,1,nan\r\n");
}

TEST_F(Cli, WritesNothingWhenNothingCouldBeRead) {
    const QString broken = Write("broken.xml", "<Analysis><DataDefinition>");
    const QString existing = Write("out", "as it was");
    for (const char* command : {"csv", "render"}) {
        const Outcome outcome = Run({command, broken, existing});
        EXPECT_EQ(outcome.code, 1);
        EXPECT_EQ(outcome.err.find("ERROR: Xml Parse error: "), 0U) << outcome.err;
        EXPECT_EQ(Read(existing), "as it was");
    }
}

TEST_F(Cli, ReadsAndWritesUnderLongAndOddNames) {
    const QString plain = Path("plain.csv");
    ASSERT_EQ(Run({"csv", Sample("bend01.paf"), plain}).code, 0);
    const QString folder = Path("very ") + QString(5, QChar(u'\u00fc')).repeated(10) + "/%1/%1/%1";
    const QString deep = folder.arg(QString(100, 'x'));
    ASSERT_TRUE(QDir().mkpath(deep));
    const QString input = deep + QStringLiteral("/\u0130 \u03a9 \U0001F600 01.paf");
    ASSERT_TRUE(QFile::copy(Sample("bend01.paf"), input));
    EXPECT_EQ(Run({"csv", input, deep + "/out.csv"}), (Outcome{0, "", ""}));
    EXPECT_EQ(Read(deep + "/out.csv"), Read(plain));
    EXPECT_EQ(Run({"csv", input, input}).code, 2) << "itself";
#ifdef Q_OS_WIN
    const auto verbatim = [](const QString& path) { return "\\\\?\\" + QDir::toNativeSeparators(path); };
    EXPECT_EQ(Run({"csv", verbatim(input), verbatim(deep) + "\\out2.csv"}), (Outcome{0, "", ""}));
    EXPECT_EQ(Read(deep + "/out2.csv"), Read(plain));
    for (const QString& device : {QString("NUL"), Path("nul")})
        EXPECT_EQ(Run({"csv", input, device}), (Outcome{0, "", ""}));
    for (const QString& device : {Path("nul.csv"), QString("COM1"), deep + "/aux"})
        EXPECT_EQ(Run({"csv", input, device}).code, 1);
    EXPECT_EQ(Entries().size(), 2);
#endif
}

TEST_F(Cli, NeverReplacesTheFileItReads) {
    for (const char* const sample : {"bend.xml", "bend01.paf"}) {
        const QByteArray content = Read(Sample(sample));
        const QString file = Write(sample, content);
        const QString hardLink = Path("hard");
        const QString link = Path("link");
        std::filesystem::create_hard_link(file.toStdString(), hardLink.toStdString());
        ASSERT_TRUE(LinkTo(file, link));
        const QStringList before = Entries();
        for (const char* const command : {"csv", "render", file.endsWith("xml") ? "pack" : "expand"}) {
            for (const QString& target : {file, Path("./" + QString(sample)), hardLink, link}) {
                const Outcome outcome = Run({command, file, target});
                EXPECT_EQ(outcome.code, 2) << command;
                EXPECT_EQ(
                    outcome.err.find("tracelyn-cli: '" + target.toStdString() + "' is the file to read"), 0U)
                    << outcome.err;
                EXPECT_EQ(Entries(), before);
                EXPECT_TRUE(Read(file) == content && Read(target) == content);
            }
        }
        QFile::remove(hardLink);
        QFile::remove(link);
    }
}

TEST_F(Cli, PackAndExpandGiveTheDocumentBack) {
    const QString packed = Path("packed.PAF");
    const QString expanded = Path("expanded.Xml");
    for (const QString& xml : {Sample("bend.xml"), Write("Größe µ.xml", "<a/>"), Write("no.xml", "")}) {
        EXPECT_EQ(Run({"pack", xml, packed}), (Outcome{0, "", ""})) << xml.toStdString();
        EXPECT_EQ(Run({"expand", packed, expanded}), (Outcome{0, "", ""})) << xml.toStdString();
        EXPECT_EQ(Read(expanded), Read(xml)) << xml.toStdString();
#ifdef Q_OS_LINUX
        EXPECT_TRUE(Run({"pack", xml, "/dev/stdout"}).out == Read(packed).toStdString()) << "into a pipe";
#endif
    }
}

TEST_F(Cli, EverySampleIsReadWithoutProblems) {
    for (const char* sample :
         {"bend.xml", "bend01.paf", "bend02.paf", "bend03.paf", "bend04.paf", "bend05.paf", "bend06.paf"})
        EXPECT_EQ(Run({"csv", "--code=47195", Sample(sample), Path("out")}), (Outcome{0, "", ""})) << sample;
}

#ifdef Q_OS_LINUX
TEST_F(Cli, PackShowsOnATerminalHowFarItIsAndCanBeStopped) {
    const QString in = Write("in.xml", Read(Sample("bend.xml")).repeated(60));
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    const std::string name = ::ptsname(terminal);
    QProcess process;
    process.setChildProcessModifier([&name] {
        ::dup2(::open(name.c_str(), O_WRONLY | O_NOCTTY), STDERR_FILENO);
        ::signal(SIGINT, SIG_DFL);
    });
    process.start(TRACELYN_CLI, {"pack", in, Path("out.paf")});
    ASSERT_TRUE(process.waitForStarted());
    std::string shown(1000, ' ');
    shown.resize(static_cast<size_t>(std::max<ssize_t>(0, ::read(terminal, shown.data(), shown.size()))));
    EXPECT_TRUE(shown.starts_with("\rPacking ")) << shown;
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(process.exitCode(), SIGINT);
    EXPECT_EQ(Files(), QStringList{"in.xml"});
    ::close(terminal);
}

TEST_F(Cli, LeavesNoFileBehindThatItCannotWriteWhole) {
    const QString existing = Write("plain", "as it was");
    using Case = std::pair<QStringList, QString>;
    for (const auto& [command, tooLarge] :
         {Case{{"csv", Sample("bend.xml")}, "Cannot write " + existing + ": "},
          Case{{"render", Sample("bend.xml")}, "Cannot write " + existing + ": "},
          Case{{"pack", Sample("bend.xml")}, "Cannot write " + existing + ": "},
          Case{{"expand", Sample("bend01.paf")}, "Problem expanding analysis file: the temporary folder "}}) {
        for (const QString& target :
             {Path(""), Path("missing/out"), existing + "/out", QString("/dev/full"), existing}) {
            const Outcome outcome = Run(command + QStringList{target}, target == existing ? 1000 : 0);
            const QString error =
                "ERROR: " + (target == existing ? tooLarge : "Cannot write " + target + ": ");
            EXPECT_EQ(outcome.code, 1);
            EXPECT_EQ(outcome.err.find(error.toStdString()), 0U) << outcome.err;
            EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1);
            EXPECT_EQ(Files(), QStringList{"plain"});
            EXPECT_EQ(Read(existing), "as it was");
        }
    }
}
#endif
