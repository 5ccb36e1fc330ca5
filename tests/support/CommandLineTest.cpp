#include "Testing.h"
#include "support/Startup.h"

using support::SplitCommandLine;
using Arguments = std::vector<std::string>;

TEST(CommandLine, SplitsAtBlanksOutsideQuotes) {
    for (const auto& [line, expected] : std::initializer_list<std::pair<std::string_view, Arguments>>{
             {"  \t ", {}},
             {"  60418\t  a.paf ", {"60418", "a.paf"}},
             {"\"C:\\My files\\a.paf\" 60418", {"C:\\My files\\a.paf", "60418"}},
             {"a\" b\"c d", {"a bc", "d"}},
             {"\"\" \"open to the end", {"", "open to the end"}}})
        EXPECT_EQ(SplitCommandLine(line), expected) << line;
}

TEST(CommandLine, TakesTenArgumentsAndStopsAtTheEleventh) {
    EXPECT_EQ(SplitCommandLine("1 2 3 4 5 6 7 8 9 10 ").size(), 10U);
    EXPECT_DEATH(SplitCommandLine("1 2 3 4 5 6 7 8 9 10 11"),
                 "argc < \\(sizeof\\(argv\\)/sizeof\\(argv\\[0\\]\\)\\)");
}

TEST(CommandLine, JoinedArgumentsSplitIntoThemselvesButForTheirQuotes) {
    const char* const argv[] = {"/usr/bin/tracelyn", "two words", "", "tab\there", "5\" tool.paf", "last"};
    EXPECT_EQ(SplitCommandLine(support::JoinArguments(6, argv)),
              (Arguments{"two words", "", "tab\there", "5 tool.paf", "last"}));
}
