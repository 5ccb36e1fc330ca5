// The mapping between world and pixels, and the zoom.
#include "render/Canvas.h"
#include "Testing.h"

TEST(Mapping, TruncatesTowardZeroAndSaturates) {
    const CMapping mapping({10, 20, 110, 70}, {0.0F, 5.0F, 50.0F, 0.0F});
    using Case = std::pair<float, int>;
    for (const auto& [world, pixel] :
         {Case{0, 10}, Case{50, 110}, Case{0.7F, 11}, Case{-0.7F, 9}, Case{25.3F, 60}, Case{-1.2F, 8}})
        EXPECT_EQ(mapping.WorldToPixelX(world), pixel) << world;
    for (const auto& [world, pixel] : {Case{5, 20}, Case{0, 70}, Case{4.96F, 20}, Case{5.04F, 20},
                                       Case{2.5F, 45}, Case{NAN, CMapping::kNoPixel}})
        EXPECT_EQ(mapping.WorldToPixelY(world), pixel) << world;
    EXPECT_GT(mapping.WorldToPixelX(std::numeric_limits<float>::max()), 100000000);
    EXPECT_LT(mapping.WorldToPixelX(-HUGE_VALF), -100000000);
}

TEST(Mapping, GivesTheNearestSampleOfAPixelAndOneEdgeForNoRange) {
    const CMapping mapping({0, 0, 100, 50}, {1000.0F, 0.0F, 1250.0F, 1.0F});
    for (const auto& [pixel, index] : {std::pair{0, 1000}, {1, 1003}, {99, 1248}, {-2, 995}})
        EXPECT_EQ(mapping.PixelToIndex(pixel), index);
    EXPECT_EQ(mapping.GetSamplesPerPixel(), 2);
    const CMapping noWorld({0, 0, 100, 50}, {7.0F, 3.0F, 7.0F, 3.0F});
    EXPECT_EQ(std::pair(noWorld.WorldToPixelX(9.0F), noWorld.WorldToPixelY(3.0F)), std::pair(0, 0));
    const CMapping noPixels({0, 0, 0, 50}, {7.0F, 3.0F, 9.0F, 4.0F});
    EXPECT_EQ(std::pair(noPixels.PixelToIndex(12), noPixels.GetSamplesPerPixel()), std::pair(7, 1));
}

TEST(Zoom, KeepsTheFactorWithinItsBoundsAndSaysWhatIsPossible) {
    CCanvas canvas;
    canvas.SetWorld({0, 0, 1000, 80});
    using Case = std::tuple<float, float, bool, bool>; // factor, what is kept of it, may it grow and shrink
    for (const auto& [factor, kept, in, out] :
         {Case{0.5F, 1, true, false}, Case{1, 1, true, false}, Case{1.25F, 1.25F, true, true},
          Case{40, 40, true, true}, Case{40.01F, 40, false, true}}) {
        canvas.Zoom(factor, 500);
        EXPECT_EQ(canvas.GetZoom(), kept);
        EXPECT_EQ(std::pair(canvas.CanZoomIn(), canvas.CanZoomOut()), std::pair(in, out)) << factor;
    }
    canvas.Zoom(4, 0);
    EXPECT_EQ(canvas.GetVisible(), (WorldRect{0, 0, 250, 80}));
}
