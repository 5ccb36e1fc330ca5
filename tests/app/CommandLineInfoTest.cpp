#include "CommandLineInfo.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <initializer_list>

TEST(CommandLine, GrantsTheHighestLevelAndOpensTheLastArgument) {
    struct Case {
        QStringList arguments;
        int level;
        QString fileName;
    };
    for (const auto& [arguments, level, fileName] : std::initializer_list<Case>{
             {{}, 0, ""},
             {{"60418"}, 1, "60418"},
             {{"83206", "60418"}, 2, "60418"},
             {{"60418", "83206", "a.paf"}, 2, "a.paf"},
             {{"47195", "dir/a.paf"}, 3, "dir/a.paf"},
             {{"dir/a.paf", "47195"}, 3, "47195"},
             {{"a.xml"}, 0, "a.xml"},
             {{"a.paf", "b c.paf"}, 0, "b c.paf"},
             {{"471950"}, 0, "471950"},
             {{" 47195"}, 0, " 47195"},
             {{"a.paf", ".paf"}, 0, ""},
             {{"a.paf", ".pafx"}, 0, ""},
             {{".PAF"}, 0, ".PAF"},
             {{".paf", "a.paf"}, 0, "a.paf"},
             {{"-47195", "-a.paf"}, 3, "a.paf"},
             {{"--47195"}, 0, "-47195"},
             {{"a.paf", "-"}, 0, ""},
             {{"a.paf", ""}, 0, ""},
         }) {
        CTracelynCommandLineInfo info;
        info.ParseCommandLine(arguments);
        const auto trace = arguments.join('|').toStdString();
        EXPECT_EQ(info.GetAccessLevel(), level) << trace;
        EXPECT_EQ(info.GetFileName(), fileName) << trace;
    }
}

#ifndef Q_OS_WIN
TEST(CommandLine, KeepsTheSlashThatBeginsAPath) {
    CTracelynCommandLineInfo info;
    info.ParseCommandLine({"/data/run05.paf"});
    EXPECT_EQ(info.GetFileName(), "/data/run05.paf");
}
#endif
