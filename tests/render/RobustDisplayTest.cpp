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

// "abc abc ..." of that many characters.
QString Repeated(const QString& unit, qsizetype size) {
    return unit.repeated(size / unit.size() + 1).left(size);
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
                AddExtremes<int16_t>(data, odd, unit, 0);
                AddExtremes<uint16_t>(data, odd, unit, 1);
                AddExtremes<int32_t>(data, odd, unit, 40);
                AddExtremes<uint32_t>(data, odd, unit, INT32_MAX);
                data.AddSignal(odd, 0, [](int) { return 0; });
            });
            EXPECT_EQ(picture, expected) << unit[0] << ", " << unit[1] << ", " << separate;
        }
    }
}

TEST(OddValues, InTheConsoleRepaintWholeWhateverTheirLength) {
    for (const QSize size : {QSize(1, 1), QSize(2, 300), QSize(500, 3), QSize(400, 120)}) {
        for (const int precision : {-1, 3, 5000}) {
            GraphWithData data;
            data.AddIndex();
            CGraphDataGroup& group = data.AddGroup("g");
            AddExtremes<float>(data, group, {0.0F, 1.0F}, precision);
            AddExtremes<uint32_t>(data, group, {-1e30F, -1e-3F}, precision);
            data.AddSignal(group, 0, [](int) { return 0; }).SetPrecision(precision);
            ExpectStepsLikeFullFrames(data.graph, size);
        }
    }
}

TEST(ManyGroups, BelowTheWindowAreNotDrawn) {
    const auto fill = [](GraphWithData& data, int groups) {
        for (int i = 0; i < groups; ++i) {
            CGraphDataGroup& group = data.AddGroup(QStringLiteral("Group %1").arg(i), DisplayType::Graph);
            data.AddSignal(group, 100, [](int k) { return k % 9; });
        }
    };
    GraphWithData many;
    fill(many, 500);
    GraphWithData few;
    fill(few, 60);
    EXPECT_EQ(PictureOf(many.graph, {300, 300}), PictureOf(few.graph, {300, 300}));
    EXPECT_LE(many.graph.GetCanvas().GetLineCount(), few.graph.GetCanvas().GetLineCount());
    ExpectStepsLikeFullFrames(many.graph, {300, 300});
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
    for (const char* const unit : {"W", "some words ", "\u05E9\u05DC\u05D5\u05DD ",
                                   "e\u0301\u0302\u0303\u0304\u0323", "\U0001F468\u200D\U0001F469"}) {
        SCOPED_TRACE(unit);
        const auto cut = graphNamed(Repeated(unit, 5'000));
        const auto long1 = graphNamed(Repeated(unit, 100'000));
        EXPECT_EQ(PictureOf(long1->graph, size), PictureOf(cut->graph, size));
        ExpectStepsLikeFullFrames(long1->graph, size);
    }
    // Narrow letters fit in great number, and none of them is missing.
    const QString narrow = Repeated("i", 350);
    const auto fits = graphNamed(narrow);
    PictureOf(fits->graph, size);
    const int width = QFontMetrics(CSmallFont::MakeFont()).horizontalAdvance(narrow);
    ASSERT_LT(width, size.width());
    EXPECT_EQ(fits->graph.GetCanvas().FindScreenRect(kGroupUnderlineRect)->right, width + 15);
}

TEST(LargePicture, IsFilledToItsLastPixel) {
    GraphWithData data;
    CGraphDataGroup& group = data.AddGroup("g", DisplayType::Graph);
    data.AddSignal(group, 3000, [](int i) { return i % 2 == 0 ? 1 : -1; });
    data.graph.SetResetPending();
    COffscreenWindow window({8000, 8000});
    data.graph.ToggleBackground(window);
    const QImage& picture = window.Paint(data.graph);
    const QColor green(0, 255, 0);
    EXPECT_EQ(picture.pixelColor(7999, 7999), ColorScheme::Light().background);
    int seen = 0;
    for (int x = 7990; x < 8000; ++x)
        seen += picture.pixelColor(x, 4000) == green ? 1 : 0;
    EXPECT_GT(seen, 0);
}
