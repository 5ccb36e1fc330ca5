#include "support/Parallel.h"
#include "Testing.h"

#include <thread>

using support::ForEachParallel;

TEST(Parallel, DoesEveryItemOnceAndReportsHowFarItIs) {
    for (const int64_t items : {0, 1, 2, 1000}) {
        std::vector<std::atomic<int>> calls(static_cast<size_t>(items));
        std::vector<double> progress;
        const int workers = support::WorkerCount(items);
        const auto work = [&](int worker, int64_t item) {
            EXPECT_TRUE(0 <= worker && worker < workers);
            ++calls[static_cast<size_t>(item)];
            return true;
        };
        const auto report = [&](double done) {
            progress.push_back(done);
            return true;
        };
        EXPECT_EQ(ForEachParallel(items, work, report), items);
        EXPECT_TRUE(std::ranges::all_of(calls, [](int count) { return count == 1; })) << items;
        EXPECT_TRUE(std::ranges::is_sorted(progress) && (progress.empty() || progress.back() <= 1));
    }
}

TEST(Parallel, StopsAtTheFirstFailureWhenEverythingBeforeItIsDone) {
    for (int round = 0; round < 50; ++round) {
        std::vector<std::atomic<bool>> done(1000);
        const auto work = [&](int, int64_t item) {
            done[static_cast<size_t>(item)] = true;
            return item < 300 || item % 7 != 0;
        };
        EXPECT_EQ(ForEachParallel(1000, work), 301);
        EXPECT_TRUE(std::all_of(done.begin(), done.begin() + 302, [](bool isDone) { return isDone; }));
    }
}

TEST(Parallel, StopsWhenAskedToWithEverythingBeforeItDone) {
    int stops = 0; // while this thread rests, the others may do everything
    for (int round = 0; round < 50; ++round) {
        std::vector<std::atomic<bool>> done(1000);
        const auto work = [&](int worker, int64_t item) {
            if (worker != 0)
                std::this_thread::yield();
            return done[static_cast<size_t>(item)] = true;
        };
        const int64_t end = ForEachParallel(1000, work, [](double part) { return part < 0.2; });
        EXPECT_GE(end, 200);
        stops += end < 1000 ? 1 : 0;
        EXPECT_EQ(std::ranges::count_if(done, [](const auto& isDone) { return isDone.load(); }), end);
        EXPECT_TRUE(std::all_of(done.begin(), done.begin() + end, [](bool isDone) { return isDone; }));
    }
    EXPECT_GT(stops, 0);
}

TEST(Parallel, ThrowsOnTheCallingThread) {
    const auto work = [](int, int64_t item) -> bool {
        return item != 20 ? true : throw std::runtime_error("twenty");
    };
    EXPECT_THROW(ForEachParallel(100, work), std::runtime_error);
}
