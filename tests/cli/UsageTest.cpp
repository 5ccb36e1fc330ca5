#include "CliTesting.h"

TEST_F(Cli, RefusesWrongUsageWithTheReasonAndTheUsageText) {
    const QByteArray usage = Run({"--help"}).out;
    ASSERT_EQ(usage.indexOf("usage:\n"), 0);
    const QString file = TestData("eight_types.xml");
    const QString out = Path("out");
    struct Case {
        QStringList arguments;
        const char* reason;
    };
    std::vector<Case> cases{
        {{}, "no command given"},
        {{"draw", file}, "unknown command 'draw'"},
        {{"--size", "1x1", "render", file, out}, "unknown command '--size'"},
        {{"info"}, "info takes 1 file(s), not 0"},
        {{"info", file, file}, "info takes 1 file(s), not 2"},
        {{"csv", file}, "csv takes 2 file(s), not 1"},
        {{"expand", file, out, out}, "expand takes 2 file(s), not 3"},
        {{"info", "--cursor", "1", file}, "Unknown option 'cursor'."},
        {{"pack", "--code", "60418", file, out}, "Unknown option 'code'."},
        {{"render", file, out, "--toggle"}, "Missing value after '--toggle'."},
        {{"render", "--toggle", "motion", file, out}, "--toggle: the file has no group 'motion'"},
        {{"render", "--toggle=Bits", "--toggle=", file, out}, "--toggle: the file has no group ''"}};
    for (const auto& [option, values] : std::initializer_list<std::pair<const char*, QStringList>>{
             {"size", {"", "640", "640x", "0x480", "-1x480", "640x16385", "1x2x3", "6.5x4"}},
             {"scheme", {"", "Dark", "blue"}},
             {"cursor", {"", "x", "1.5", "3000000000"}},
             {"fixed", {"0x10"}},
             {"zoom", {"", "nan", "inf", "1e99", "2,5"}},
             {"scroll", {"1e3"}},
             {"console", {"top"}}}) {
        for (const QString& value : values)
            cases.push_back({{"render", QString("--%1=%2").arg(option, value), file, out}, option});
    }
    for (const Case& expected : cases) {
        const Outcome outcome = Run(expected.arguments);
        const std::string arguments = expected.arguments.join(" ").toStdString();
        EXPECT_EQ(outcome.code, 2) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_TRUE(outcome.err.startsWith("tracelyn-cli: ")) << outcome.err.constData();
        EXPECT_TRUE(outcome.err.endsWith("\n" + usage)) << arguments;
        EXPECT_NE(outcome.err.indexOf(expected.reason), -1) << arguments << ": " << outcome.err.constData();
    }
    EXPECT_EQ(Files(), "");
}

TEST_F(Cli, TellsItsUsageAndItsVersion) {
    for (const QStringList& arguments :
         {QStringList{"--help"}, {"render", "--help"}, {"info", "no.xml", "--help"}}) {
        const Outcome help = Run(arguments);
        EXPECT_EQ(help.code, 0);
        EXPECT_EQ(help.err, "");
        for (const char* word : {"info ", "csv ", "render ", "pack ", "expand ", "--toggle", "exit code: 0 "})
            EXPECT_NE(help.out.indexOf(word), -1) << word;
    }
    EXPECT_EQ(Run({"--version"}), (Outcome{0, "tracelyn-cli 2.3.16\n", ""}));
}
