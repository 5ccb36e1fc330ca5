#include "support/BackgroundTasks.h"
#include "Testing.h"

#include <array>
#include <atomic>
#include <future>
#include <stdexcept>

using support::CBackgroundTasks;

TEST(BackgroundTasks, AreAllDoneWhenFinishReturns) {
    CBackgroundTasks tasks;
    for (const int count : {0, 1, 300, 2}) {
        std::vector<std::atomic<int>> calls(static_cast<size_t>(count));
        for (auto& each : calls)
            tasks.Add([&each] { ++each; });
        tasks.Finish();
        EXPECT_TRUE(std::ranges::all_of(calls, [](int done) { return done == 1; })) << count;
    }
}

TEST(BackgroundTasks, BeginWhileTheCallerGoesOn) {
    if (std::thread::hardware_concurrency() < 2)
        GTEST_SKIP() << "there is one core";
    CBackgroundTasks tasks;
    std::promise<void> begun;
    tasks.Add([&begun] { begun.set_value(); });
    EXPECT_EQ(begun.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    tasks.Finish();
}

TEST(BackgroundTasks, ThrowInFinishAndLeaveNoTaskBehind) {
    std::atomic<int> done = 0;
    {
        CBackgroundTasks tasks;
        for (int round = 0; round < 20; ++round) {
            tasks.Add([] { throw std::runtime_error("no memory"); });
            for (int i = 0; i < 10; ++i)
                tasks.Add([&done] { ++done; });
            EXPECT_THROW(tasks.Finish(), std::runtime_error);
            done = 0;
            tasks.Finish();
            EXPECT_EQ(done, 0) << "a task was left over";
        }
        tasks.Add([&done] { ++done; });
    }
    EXPECT_EQ(done, 1) << "the end waits for what was begun";
}

TEST(BackgroundTasks, AreHelpedUntilWhatIsWaitedForIsThere) {
    CBackgroundTasks tasks;
    for (int round = 0; round < 200; ++round) {
        std::array<std::atomic<int>, 20> calls{};
        for (auto& each : calls)
            tasks.Add([&each] { ++each; });
        const size_t waitedFor = static_cast<size_t>(round) % calls.size();
        tasks.HelpUntil([&] { return calls[waitedFor] != 0; });
        EXPECT_EQ(calls[waitedFor], 1) << round;
        tasks.Finish();
        EXPECT_TRUE(std::ranges::all_of(calls, [](int done) { return done == 1; })) << round;
    }
    tasks.Add([] { throw std::runtime_error("no memory"); });
    EXPECT_THROW(tasks.HelpUntil([] { return false; }), std::runtime_error);
    EXPECT_THROW(tasks.Finish(), std::runtime_error);
    tasks.Finish();
}
