#include "app/TracelynApp.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <initializer_list>

using namespace Tracelyn;

TEST(CommandLine, GrantsTheHighestLevelAndOpensTheLastArgument) {
    struct Case {
        QStringList arguments;
        int level;
        QString fileName;
    };
    for (const auto& [arguments, level, fileName] : std::initializer_list<Case>{
             {{}, 0, ""},
             {{"83206", "60418"}, 2, "60418"},
             {{"60418", "83206", "a.paf"}, 2, "a.paf"},
             {{"47195", "dir/a.paf"}, 3, "dir/a.paf"},
             {{"dir/a.paf", "47195"}, 3, "47195"},
             {{"a.paf", "b c.paf"}, 0, "b c.paf"},
             {{"471950"}, 0, "471950"},
             {{"a.paf", ".paf"}, 0, ""},
             {{"a.paf", ".pafx"}, 0, ""},
             {{".paf", "a.paf"}, 0, "a.paf"},
             {{"-47195", "-a.paf"}, 3, "a.paf"},
#ifndef Q_OS_WIN
             {{"/data/run05.paf"}, 0, "/data/run05.paf"},
#endif
         }) {
        CTracelynCommandLineInfo info;
        info.ParseCommandLine(arguments);
        const auto trace = arguments.join('|').toStdString();
        EXPECT_EQ(info.GetAccessLevel(), level) << trace;
        EXPECT_EQ(info.GetFileName(), fileName) << trace;
    }
}
