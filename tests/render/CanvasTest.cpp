#include "render/Canvas.h"
#include "render/PixelPainter.h"

#include <gtest/gtest.h>

#include <QImage>

#include <cmath>
#include <limits>

using namespace Tracelyn;

TEST(Mapping, TruncatesTowardZeroAndSaturates) {
    const Mapping mapping({10, 20, 110, 70}, {0.0F, 5.0F, 50.0F, 0.0F});
    struct Case {
        float world;
        int pixel;
    };
    for (const auto& [world, pixel] :
         {Case{0, 10}, {50, 110}, {0.7F, 11}, {-0.7F, 9}, {25.3F, 60}, {-1.2F, 8}})
        EXPECT_EQ(mapping.WorldToPixelX(world), pixel) << world;
    for (const auto& [world, pixel] : {Case{5, 20}, {0, 70}, {4.96F, 20}, {5.04F, 20}, {2.5F, 45}})
        EXPECT_EQ(mapping.WorldToPixelY(world), pixel) << world;
    EXPECT_GT(mapping.WorldToPixelX(std::numeric_limits<float>::max()), 100000000);
    EXPECT_LT(mapping.WorldToPixelX(-std::numeric_limits<float>::infinity()), -100000000);
    EXPECT_EQ(mapping.WorldToPixelY(NAN), Mapping::kNoPixel);
}

TEST(Mapping, AZeroWorldRangeMapsToOneEdge) {
    const Mapping mapping({0, 0, 100, 50}, {7.0F, 3.0F, 7.0F, 3.0F});
    EXPECT_EQ(mapping.WorldToPixelX(9.0F), 0);
    EXPECT_EQ(mapping.WorldToPixelY(3.0F), 0);
    const Mapping noPixels({0, 0, 0, 50}, {7.0F, 3.0F, 9.0F, 4.0F});
    EXPECT_EQ(noPixels.PixelToIndex(12), 7);
    EXPECT_EQ(noPixels.GetSamplesPerPixel(), 1);
}

TEST(Mapping, PixelsGiveTheNearestSample) {
    const Mapping mapping({0, 0, 100, 50}, {1000.0F, 0.0F, 1250.0F, 1.0F});
    EXPECT_EQ(mapping.PixelToIndex(0), 1000);
    EXPECT_EQ(mapping.PixelToIndex(1), 1003);
    EXPECT_EQ(mapping.PixelToIndex(99), 1248);
    EXPECT_EQ(mapping.PixelToIndex(-2), 995);
    EXPECT_EQ(mapping.GetSamplesPerPixel(), 2);
}

TEST(VisibleExtent, IsMovedIntoTheFullExtentOrWidenedToIt) {
    struct Case {
        float from, to, shownFrom, shownTo;
    };
    for (const auto& c : {Case{200, 300, 200, 300},
                          {-50, 50, 0, 100},
                          {950, 1050, 900, 1000},
                          {-10, 1200, 0, 1000},
                          {0, 1000, 0, 1000},
                          {300, 300, 300, 300}}) {
        CCanvas canvas;
        canvas.SetWorld({0, 0, 1000, 80});
        canvas.SetVisible({c.from, 0, c.to, 80});
        EXPECT_EQ(canvas.GetVisible(), (WorldRect{c.shownFrom, 0, c.shownTo, 80})) << c.from;
    }
}

TEST(Zoom, KeepsTheFactorWithinItsBoundsAndSaysWhatIsPossible) {
    CCanvas canvas;
    canvas.SetWorld({0, 0, 1000, 80});
    struct Case {
        float factor, stored;
        bool in, out;
    };
    for (const auto& c : {Case{0.5F, 1, true, false},
                          {1, 1, true, false},
                          {1.25F, 1.25F, true, true},
                          {40, 40, true, true},
                          {40.01F, 40, false, true}}) {
        canvas.Zoom(c.factor, 500);
        EXPECT_EQ(canvas.GetZoom(), c.stored);
        EXPECT_EQ(canvas.CanZoomIn(), c.in) << c.factor;
        EXPECT_EQ(canvas.CanZoomOut(), c.out) << c.factor;
    }
    canvas.Zoom(4, 500);
    EXPECT_EQ(canvas.GetVisible(), (WorldRect{375, 0, 625, 80}));
    canvas.Zoom(4, 0);
    EXPECT_EQ(canvas.GetVisible(), (WorldRect{0, 0, 250, 80}));
}

TEST(ScreenRects, AreHitInOrderWithInclusiveBounds) {
    CCanvas canvas;
    canvas.SetMapping({0, 0, 100, 100}, {0, 0, 100, 100});
    canvas.AddScreenRect(QStringLiteral("a"), 10, 10, 20, 20);
    canvas.AddScreenRect(kValueRect, 20, 20, 30, 30);
    canvas.AddScreenRect(kValueRect, 50, 50, 60, 60);
    EXPECT_EQ(canvas.HitTest(20, 20)->name, QStringLiteral("a"));
    EXPECT_EQ(canvas.HitTest(30, 30)->name, kValueRect);
    EXPECT_EQ(canvas.HitTest(9, 10), nullptr);
    EXPECT_EQ(canvas.FindScreenRect(kValueRect)->left, 20);
    std::vector<SCREENRECT> values;
    canvas.CollectScreenRects(kValueRect, values);
    EXPECT_EQ(values.size(), 2U);
    canvas.ClearScreenRects();
    EXPECT_EQ(canvas.FindScreenRect(kValueRect), nullptr);
}

TEST(Primitives, TakeWorldCoordinatesAndSkipWhatIsNoNumber) {
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    CSmallFont font;
    CPixelPainter pixels(painter, font, {0, 0, 40, 40});
    pixels.SetClip(QRect(0, 0, 40, 40));
    pixels.SetPen(Qt::red);
    pixels.SetBrush(Qt::blue);
    CCanvas canvas;
    canvas.BeginDraw(pixels, {0, 0, 40, 40});
    canvas.SetMapping({0, 0, 40, 40}, {0, 0, 20, 20});
    canvas.SetPixel(2, 3);
    canvas.SetPixel(NAN, 3);
    canvas.Triangle(5, 5, 15, 5, 5, 15);
    canvas.Rectangle(19, 19, 16, 16);
    pixels.Flush();
    EXPECT_EQ(image.pixelColor(4, 6), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(5, 6), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(28, 28), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(32, 32), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(35, 35), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(38, 37), QColor(Qt::black)) << "right and bottom edges are exclusive";
}
