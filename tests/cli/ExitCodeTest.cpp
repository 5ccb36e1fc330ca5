// When the tool ends with which exit code, and what it says then.
#include "CliTesting.h"

TEST_F(Cli, TellsWhyItFailed) {
    const QByteArray bend = Read(Sample("bend01.paf"));
    const QString cut = Write("cut.paf", bend.left(bend.size() / 2));
    const QString other = Write("other.paf", QByteArray(bend).replace("tmpandat.bin", "tmpandat.bak"));
    const QString open = Write("open.xml", "<Analysis>");
    const QString plain = TestData("eight_types.xml");
    const QString out = Path("out");
    using Case = std::tuple<int, QStringList, QString>; // with how the error begins
    std::vector<Case> cases{
        Case{1, {"csv", "no.xml", out}, "ERROR: Cannot read file: no.xml\n"},
        Case{1, {"pack", "no.xml", out}, "ERROR: Cannot read file: no.xml\n"},
        Case{1, {"info", Write("a.txt", "")}, "ERROR: Unknown file extension: " + Path("a.txt") + "\n"},
        Case{1,
             {"info", cut},
             "ERROR: Problem expanding analysis file: " + cut + " is damaged or no container\n"},
        Case{1, {"info", "no.paf"}, "ERROR: Cannot read file: no.paf\n"},
        Case{1,
             {"expand", other, out},
             "ERROR: Problem expanding analysis file: " + other + " holds no analysis\n"},
        Case{2, {}, "no command given"},
        Case{2, {"draw", plain}, "unknown command 'draw'"},
        Case{2, {"expand", cut, out, out}, "expand takes 2 file(s), not 3"},
        Case{2, {"pack", "--code", "60418", plain, out}, "Unknown option 'code'."},
        Case{2, {"render", plain, out, "--toggle"}, "Missing value after '--toggle'."},
        Case{2, {"render", "--toggle", "motion", plain, out}, "--toggle: the file has no group 'motion'"},
        Case{3, {"info", other}, "ERROR: Xml Parse error: File does not exist\n"},
        Case{3, {"info", open}, "ERROR: Xml Parse error: " + open + " (1): "},
        Case{3, {"info", Write("root.xml", "<a/>")}, "ERROR: Invalid root name: a\n"}};
    for (const QString option : {"size=", "size=640", "size=0x480", "size=640x16385", "scheme=Dark",
                                 "cursor=1.5", "cursor=3000000000", "fixed=0x10", "zoom=nan", "zoom=1e99",
                                 "scroll=1e3", "scroll=-1", "console=top"})
        cases.emplace_back(2, QStringList{"render", "--" + option, plain, out},
                           "--" + QString(option).replace("=", ": '") + "' is not allowed");

    const std::string usage = Run({"--help"}).out;
    const QStringList before = Files();
    for (const auto& [code, arguments, error] : cases) {
        const Outcome outcome = Run(arguments);
        const std::string err =
            (code == 2 ? "tracelyn-cli: " : "") + error.toStdString() + (code == 2 ? "\n" + usage : "");
        EXPECT_EQ(outcome, (Outcome{code, code == 3 ? outcome.out : "", outcome.err}));
        EXPECT_EQ(outcome.err.substr(0, err.size()), err);
        EXPECT_EQ(outcome.out.find("\"text\": \"") != std::string::npos, code == 3) << outcome.out;
    }
    EXPECT_EQ(Files(), before);
}

TEST_F(Cli, TellsItsUsageAndItsVersion) {
    EXPECT_EQ(Run({"--help"}).out.find("usage:\n"), 0U);
    for (const QStringList& arguments :
         {QStringList{"-h"}, {"help"}, {"info", "no.xml", "--help"}, {"csv", "-h"}, {"help", "csv"}})
        EXPECT_EQ(Run(arguments), Run({"--help"})) << arguments.join(' ').toStdString();
    EXPECT_EQ(Run({"--version"}), (Outcome{0, "tracelyn-cli 2.3.16\n", ""}));
}
