#include "CommandLine.h"

#include <gtest/gtest.h>

#include <utility>

using support::JoinArguments;
using support::SplitCommandLine;
using Arguments = std::vector<std::string>;

TEST(CommandLine, SplitsAtBlanksOutsideQuotes) {
    for (const auto& [line, expected] : std::initializer_list<std::pair<std::string_view, Arguments>>{
             {"", {}},
             {"  \t ", {}},
             {"60418 a.paf", {"60418", "a.paf"}},
             {"  60418\t  a.paf ", {"60418", "a.paf"}},
             {"\"C:\\My files\\a.paf\" 60418", {"C:\\My files\\a.paf", "60418"}},
             {"a\" b\"c d", {"a bc", "d"}},
             {"\"\" x", {"", "x"}},
             {"\"open to the end", {"open to the end"}},
             {"K\xC3\xB6rper.paf", {"K\xC3\xB6rper.paf"}}}) {
        EXPECT_EQ(SplitCommandLine(line), expected) << line;
    }
}

TEST(CommandLine, TakesTenArgumentsAndStopsAtTheEleventh) {
    EXPECT_EQ(SplitCommandLine("1 2 3 4 5 6 7 8 9 10 ").size(), 10U);
    EXPECT_DEATH(SplitCommandLine("1 2 3 4 5 6 7 8 9 10 11"),
                 "argc < \\(sizeof\\(argv\\)/sizeof\\(argv\\[0\\]\\)\\)");
}

TEST(CommandLine, JoinedArgumentsSplitIntoThemselves) {
    const char* const argv[] = {"/usr/bin/tracelyn", "83206", "/tmp/two words.paf", "", "tab\there", "last"};
    const std::string line = JoinArguments(6, argv);
    EXPECT_EQ(SplitCommandLine(line), (Arguments{"83206", "/tmp/two words.paf", "", "tab\there", "last"}));
    EXPECT_EQ(JoinArguments(1, argv), "");
}

TEST(CommandLine, AQuoteInAnArgumentDoesNotReachItsNeighbours) {
    const char* const argv[] = {"tracelyn", "5\" tool.paf", "60418"};
    EXPECT_EQ(SplitCommandLine(JoinArguments(3, argv)), (Arguments{"5 tool.paf", "60418"}));
}
