#include "Testing.h"
#include "app/TracelynApp.h"

TEST(CommandLine, GrantsTheHighestLevelAndOpensTheLastArgument) {
    using Case = std::tuple<const char*, int, const char*>; // arguments, "|" between them; level; file
    for (const auto& [arguments, level, fileName] :
         {Case{"", 0, ""}, Case{"83206|60418", 2, "60418"}, Case{"60418|83206|a.paf", 2, "a.paf"},
          Case{"47195|dir/a.paf", 3, "dir/a.paf"}, Case{"dir/a.paf|47195", 3, "47195"},
          Case{"a.paf|b c.paf", 0, "b c.paf"}, Case{"471950", 0, "471950"}, Case{"a.paf|.paf", 0, ""},
          Case{"a.paf|.pafx", 0, ""}, Case{".paf|a.paf", 0, "a.paf"}, Case{"-47195|-a.paf", 3, "a.paf"},
#ifdef Q_OS_WIN
          Case{"/47195|/a.paf", 3, "a.paf"}, Case{"//server/share/a.paf", 0, "//server/share/a.paf"},
          Case{"\\\\server\\share\\a.paf", 0, "\\\\server\\share\\a.paf"}
#else
          Case{"/data/run05.paf", 0, "/data/run05.paf"}
#endif
         }) {
        CTracelynCommandLineInfo info;
        info.ParseCommandLine(QString(arguments).split('|', Qt::SkipEmptyParts));
        EXPECT_EQ(info.GetAccessLevel(), level) << arguments;
        EXPECT_EQ(info.GetFileName(), fileName) << arguments;
    }
}
