#include "Startup.h"
#include "CapturedReports.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#ifdef __linux__
#include <pthread.h>
#endif

using support::RunMain;

TEST(RunMain, RunsMainOnTheCallingThreadWithItsArgumentsAndGivesItsResult) {
    const CapturedReports reports;
    std::vector<std::string> seen;
    std::thread::id thread;
    const int result = RunMain("60418 \"my file.paf\"", [&](const std::vector<std::string>& arguments) {
        seen = arguments;
        thread = std::this_thread::get_id();
        return 42;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(seen, (std::vector<std::string>{"60418", "my file.paf"}));
    EXPECT_EQ(thread, std::this_thread::get_id());
    EXPECT_TRUE(reports.Texts().isEmpty());
}

TEST(RunMain, StopsBeforeMainWhenTheFloatingPointUnitIsNotExact) {
    for (const double result : {0.0, std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0),
                                std::numeric_limits<double>::quiet_NaN()}) {
        const CapturedReports reports;
        bool ran = false;
        const auto mainFunction = [&](const std::vector<std::string>&) {
            ran = true;
            return 0;
        };
        EXPECT_EQ(RunMain("", mainFunction, result), -1) << result;
        EXPECT_FALSE(ran);
        EXPECT_EQ(reports.Texts(), QStringList{"FPU error"});
    }
}

#ifdef __linux__
TEST(RunMain, NamesTheThread) {
    std::thread([] {
        RunMain("", [](const std::vector<std::string>&) {
            char name[16] = {};
            pthread_getname_np(pthread_self(), name, sizeof name);
            EXPECT_STREQ(name, "<main>");
            return 0;
        });
    }).join();
}
#endif
