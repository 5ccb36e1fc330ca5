// Pictures as files of lines and texts.
#include "render/Picture.h"
#include "RenderTesting.h"
#include "Testing.h"

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
