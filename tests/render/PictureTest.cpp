// Pictures as files.
#include "render/Picture.h"
#include "RenderTesting.h"
#include "Testing.h"
#include "render/Png.h"

#include <QPainter>
#include <QSvgRenderer>

namespace {

// Bands as full of lines as they get, without a letter: a font differs from one viewer to the next.
struct Noise : GraphWithData {
    Noise() {
        for (int i = 0; i < 10; ++i)
            AddSignal(AddGroup({}, DisplayType::Graph), 100'000, [&](int) { return random() % 60'000; });
        for (CGraphDataGroup* const bits : {&AddGroup({}), &AddGroup({})}) {
            bits->m_bSeparateSets = true;
            for (int i = 0; i < 3; ++i)
                AddBit(*bits, 100'000, [&](int) { return random() % 2; }).SetName({});
        }
        graph.SetResetPending();
    }
    QByteArray Svg(COffscreenWindow& window) {
        return EncodePicture(graph, window, PictureFormat::Svg, "<90 & more>");
    }
    std::mt19937 random{3};
};

} // namespace

TEST(Picture, OfLinesShowsThePixelsOfTheWindow) {
    Noise noise;
    // In the low window the bands have no headers: their curves pass above the console.
    for (const auto& [zoom, size] : {std::pair{1.0F, QSize(901, 700)}, {40.0F, QSize(640, 180)}}) {
        COffscreenWindow window(size);
        window.Paint(noise.graph);
        noise.graph.Zoom(window, zoom);
        noise.graph.ToggleBackground(window);
        noise.graph.SetFixedCursor(window, 50'100);
        QSvgRenderer viewer(noise.Svg(window));
        EXPECT_EQ(viewer.defaultSize(), size);
        QImage shown(viewer.defaultSize(), QImage::Format_RGB32);
        shown.fill(Qt::red);
        QPainter painter(&shown);
        viewer.render(&painter);
        painter.end();
        EXPECT_EQ(shown, window.Paint(noise.graph)) << zoom;
    }
}

TEST(Picture, OfLinesStaysSmallHoweverDenseTheCurvesAre) {
    Noise noise;
    COffscreenWindow window({3840, 2160});
    window.Paint(noise.graph);
    EXPECT_LT(noise.Svg(window).size(), 5'000'000);
    const QByteArray pdf = EncodePicture(noise.graph, window, PictureFormat::Pdf, "noise");
    EXPECT_LT(pdf.size(), 5'000'000);
    EXPECT_TRUE(pdf.contains("MediaBox [0 0 3840.000000 2160.000000]")) << "a page of the picture's size";
}

TEST(Picture, OfPixelsShowsThemWhateverTheyAre) {
    std::mt19937 random{5};
    for (const QSize size : {QSize(1, 1), QSize(7, 300), QSize(333, 257), QSize(1280, 3)}) {
        for (const unsigned colors : {1U, 2U, 257U, 0x1000000U}) {
            QImage image(size, QImage::Format_RGB32);
            image.setDotsPerMeterX(3780);
            image.setDotsPerMeterY(7559);
            for (int y = 0; y < size.height(); ++y) {
                // Every third row is like the one above, but for its last pixel, and every sixth one is the
                // same.
                for (int x = 0; x < size.width(); ++x) {
                    const auto color = static_cast<QRgb>(random() % colors * 0x10305);
                    image.setPixel(x, y, y % 3 == 1 ? image.pixel(x, y - 1) : color);
                }
                if (y % 6 == 1)
                    image.setPixel(size.width() - 1, y, qRgb(1, 255, 128));
            }
            const QImage shown = QImage::fromData(EncodePng(image), "PNG");
            EXPECT_EQ(shown, image) << size.width() << ", " << colors;
            EXPECT_EQ(shown.dotsPerMeterX(), 3780);
            EXPECT_EQ(shown.dotsPerMeterY(), 7559);
        }
    }
    Noise noise;
    COffscreenWindow window({641, 403}, 1.5);
    window.Paint(noise.graph);
    const QByteArray png = EncodePicture(noise.graph, window, PictureFormat::Png, {});
    EXPECT_EQ(QImage::fromData(png, "PNG"), QImage(window.Paint(noise.graph)));
}
