// Pictures of recordings that nobody would record: whatever a file says, the window is filled, a step
// repaints as a full frame would, and nothing else suffers.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/GraphDrawingContext.h"
#include "render/GraphWindow.h"

#include <QFontMetrics>

namespace {

constexpr QSize kSize(300, 200);
constexpr float kHuge = std::numeric_limits<float>::max();

QImage PictureOf(CGraph& graph, QSize size = kSize) {
    RecordingWindow window(graph, size);
    window.PaintAll();
    return window.GetImage();
}

// Zooms and steps about, and compares what partial repaints left with a full frame.
void ExpectStepsLikeFullFrames(CGraph& graph, QSize size) {
    graph.SetResetPending();
    RecordingWindow window(graph, size);
    window.PaintAll();
    EXPECT_EQ(window.Count(Qt::magenta), 0) << "every pixel is filled";
    for (const float zoom : {1.0F, 7.0F, 40.0F}) {
        graph.Zoom(window, zoom);
        window.PaintAll();
        for (const int step : {1, -3, 1000, -1}) {
            graph.SetCursorPosition(window, graph.GetCursorPosition() + step);
            window.PaintInvalid();
            graph.SetFixedCursor(window, graph.GetCursorPosition() - 2);
            window.PaintInvalid();
        }
        EXPECT_EQ(window.GetImage(), PictureOf(graph, size)) << "zoom " << zoom;
    }
}

template <class T>
void AddExtremes(GraphWithData& data, CGraphDataGroup& group, const std::array<float, 2>& unit,
                 int precision) {
    const std::vector<T> samples = Extremes<T>();
    CGraphDataSet& set = data.AddSignal<T>(
        group, "t", 60, [&](int i) { return samples[static_cast<size_t>(i * i) % samples.size()]; });
    set.SetUnit("mm", unit[0], unit[1], precision);
    set.SetColor(0x00FFFF);
}

} // namespace

TEST(OddValues, OfEveryTypeAndUnitLeaveTheOtherBandsAlone) {
    const auto pictureWith = [](auto addOdd) {
        GraphWithData data;
        CGraphDataGroup& plain = data.AddGroup("plain", DisplayType::Graph);
        data.AddSignal(plain, 60, [](int i) { return std::sin(i); });
        addOdd(data);
        ExpectStepsLikeFullFrames(data.graph, kSize);
        return PictureOf(data.graph).copy(0, 0, kSize.width(), plain.m_nHeight);
    };
    const QImage expected = pictureWith([](GraphWithData& data) {
        data.AddSignal(data.AddGroup("odd", DisplayType::Graph), 60, [](int) { return 0.0; });
    });
    for (const std::array<float, 2> unit :
         {std::array{0.0F, 0.0F}, std::array{1e31F, -2.0F}, std::array{-kHuge, HUGE_VALF},
          std::array{HUGE_VALF, -HUGE_VALF}, std::array{NAN, kHuge}}) {
        for (const bool separate : {false, true}) {
            const QImage picture = pictureWith([&](GraphWithData& data) {
                CGraphDataGroup& odd = data.AddGroup("odd", DisplayType::Graph);
                odd.m_bSeparateSets = separate;
                odd.m_bInverted = !separate;
                AddExtremes<float>(data, odd, unit, 3);
                AddExtremes<int8_t>(data, odd, unit, -7);
                AddExtremes<uint16_t>(data, odd, unit, 1);
                AddExtremes<int32_t>(data, odd, unit, 40);
                AddExtremes<uint32_t>(data, odd, unit, INT32_MAX);
                data.AddSignal(odd, 0, [](int) { return 0; });
            });
            EXPECT_EQ(picture, expected) << unit[0] << ", " << unit[1] << ", " << separate;
        }
    }
}

TEST(LongNames, AreShownAsFarAsTheWindowReaches) {
    const QSize size(1200, 100);
    const auto graphNamed = [](const QString& name) {
        auto data = std::make_unique<GraphWithData>();
        CGraphDataGroup& group = data->AddGroup(name);
        data->AddSignal(group, name, 100, [](int i) { return i; }).SetColor(0x00FF00);
        data->AddBit(group, name, 100, [](int i) { return i % 3 == 0; }).SetColor(0x0000FF);
        group.m_bSelected = true;
        return data;
    };
    for (const QString unit : {"W", "some words ", "\u05E9\u05DC\u05D5\u05DD ",
                               "e\u0301\u0302\u0303\u0304\u0323", "\U0001F468\u200D\U0001F469"}) {
        SCOPED_TRACE(unit.toStdString());
        const auto endless = graphNamed(unit.repeated(20'000));
        EXPECT_EQ(PictureOf(endless->graph, size), PictureOf(graphNamed(unit.repeated(2'000))->graph, size));
        ExpectStepsLikeFullFrames(endless->graph, size);
    }
    // Narrow letters fit in great number, and none of them is missing.
    const QString narrow(350, u'i');
    const auto fits = graphNamed(narrow);
    PictureOf(fits->graph, size);
    const int width = QFontMetrics(CSmallFont::MakeFont()).horizontalAdvance(narrow);
    ASSERT_LT(width, size.width());
    EXPECT_EQ(fits->graph.GetCanvas().FindScreenRect(kGroupUnderlineRect)->right, width + 15);
}
