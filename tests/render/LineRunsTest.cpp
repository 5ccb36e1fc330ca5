#include "render/LineRuns.h"
#include "Testing.h"

namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels RunPixels(int x1, int y1, int x2, int y2, const PixelRect& clip) {
    Pixels pixels;
    ForEachLineRun(x1, y1, x2, y2, clip, [&](int x, int y, int width, int height) {
        for (int dy = 0; dy < height; ++dy) {
            for (int dx = 0; dx < width; ++dx)
                EXPECT_TRUE(pixels.emplace(x + dx, y + dy).second) << "drawn twice";
        }
    });
    return pixels;
}

// Step by step along the longer direction.
Pixels SteppedPixels(int x1, int y1, int x2, int y2, const PixelRect& clip) {
    Pixels pixels;
    const int dx = x2 - x1;
    const int dy = y2 - y1;
    const int steps = std::max(std::abs(dx), std::abs(dy));
    for (int k = 0; k < steps; ++k) {
        const auto at = [&](int start, int span) {
            const int sign = span < 0 ? -1 : 1;
            return start + sign * ((2 * k * std::abs(span) + steps) / (2 * steps));
        };
        const int x = at(x1, dx);
        const int y = at(y1, dy);
        if (x >= clip.left && x < clip.right && y >= clip.top && y < clip.bottom)
            pixels.emplace(x, y);
    }
    return pixels;
}

} // namespace

TEST(LineRuns, AreThePixelsOfTheSteppedLineInsideAnyClip) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> coordinate(-60, 60);
    for (int i = 0; i < 3000; ++i) {
        const int x1 = coordinate(random);
        const int y1 = coordinate(random);
        // Every second line is one between columns side by side, as most are.
        const bool isShort = i % 2 == 0;
        const int x2 = isShort ? x1 + coordinate(random) % 3 : coordinate(random);
        const int y2 = isShort ? y1 + coordinate(random) % 4 : coordinate(random);
        const int left = coordinate(random);
        const int top = coordinate(random);
        const PixelRect clip{left, top, left + 40, top + 25};
        ASSERT_EQ(RunPixels(x1, y1, x2, y2, clip), SteppedPixels(x1, y1, x2, y2, clip))
            << x1 << ',' << y1 << " to " << x2 << ',' << y2;
    }
}

TEST(LineRuns, OfHugeLinesCostNoMoreThanTheClipShows) {
    int runs = 0;
    const auto count = [&](int, int, int width, int height) {
        ++runs;
        EXPECT_LE(width, 100);
        EXPECT_LE(height, 50);
    };
    ForEachLineRun(50, 25, 60, -268435456, {0, 0, 100, 50}, count);
    ForEachLineRun(-268435456, -268435456, 268435456, 268435450, {0, 0, 100, 50}, count);
    ForEachLineRun(0, 268435456, 99, -268435456, {0, 0, 100, 50}, count);
    EXPECT_GT(runs, 0);
    EXPECT_LE(runs, 250);
}
