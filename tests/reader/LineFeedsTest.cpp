#include "reader/rows/SampleText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

TEST(LineFeeds, AreCountedInTextOfAnyLength) {
    std::mt19937 random(1);
    for (size_t size = 0; size < 2000; size += size < 600 ? 1 : 97) {
        std::string text(size, '\n');
        EXPECT_EQ(Tracelyn::CountLineFeeds(text), static_cast<int64_t>(size));
        for (char& c : text)
            c = static_cast<char>(random() % 3 == 0 ? '\n' : random());
        EXPECT_EQ(Tracelyn::CountLineFeeds(text), std::ranges::count(text, '\n')) << size;
    }
}
