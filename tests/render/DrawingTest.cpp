// What bands, curves and lanes look like.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/GraphDrawingContext.h"

namespace {

const QColor kGreen(0, 255, 0);
const QColor kRed(255, 0, 0);
constexpr ColorRef kRedRef = 0x0000FF;
constexpr float kHuge = std::numeric_limits<float>::max();
constexpr QSize kSize(400, 200);
// The plot of one expanded band; the bottom is exclusive.
constexpr int kPlotTop = 14;
constexpr int kPlotBottom = 196;

// One group shown in the graph only, in a window of the size above.
struct OneBand : GraphWithData {
    OneBand() { graph.SetResetPending(); }

    CGraphDataGroup& group = AddGroup("Band", DisplayType::Graph);
    RecordingWindow window{graph, kSize};
};

} // namespace

TEST(Header, ShowsBoxNameUnderlineAndSeparators) {
    for (const bool dark : {true, false}) {
        const ColorScheme& colors = dark ? ColorScheme::Dark() : ColorScheme::Light();
        OneBand data;
        CGraphDataGroup& second = data.AddGroup("Second", DisplayType::Graph);
        second.m_bExpanded = false;
        if (!dark)
            data.graph.ToggleBackground(data.window);
        data.window.PaintAll();
        const int height = data.group.m_nHeight;
        using Case = std::tuple<int, int, QColor, const char*>;
        for (const auto& [x, y, color, what] :
             {Case{1, 1, colors.boxPen, "box"}, Case{9, 9, colors.boxPen, "box"},
              Case{10, 5, colors.background, "right of it"}, Case{2, 2, colors.boxBrush, "inside"},
              Case{3, 5, colors.boxPen, "minus"}, Case{8, 5, colors.boxBrush, "right of the minus"},
              Case{5, 3, colors.boxBrush, "no plus in an expanded group"},
              Case{5, second.m_nTop + 3, colors.boxPen, "plus in a collapsed one"},
              Case{11, 10, colors.underline, "underline"},
              Case{11, second.m_nTop + 10, colors.background, "none where not selected"}})
            EXPECT_EQ(data.window.At(x, y), color) << what;
        EXPECT_EQ(data.window.Rows(399, colors.separator, 0, height),
                  (std::vector{height - 3, height - 2, height - 1}));

        const SCREENRECT* const name = data.graph.GetCanvas().FindScreenRect(GroupNameRect("Second"));
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(std::tuple(name->top, name->right, name->bottom),
                  std::tuple(second.m_nTop, 200, second.m_nTop + 13));
    }
}

TEST(Curve, ThatNeverChangesIsOneLineAlongTheEdge) {
    // One more than each of the last three is no float.
    for (const double value : {42.0, 16'777'216.0, -33'554'432.0, 1e30}) {
        for (const bool inverted : {false, true}) {
            OneBand data;
            data.group.m_bInverted = inverted;
            data.AddSignal(data.group, 1000, [=](int) { return value; });
            data.window.PaintAll();
            for (const int x : {0, 100, 399})
                EXPECT_EQ(data.window.Rows(x, kGreen), std::vector{inverted ? kPlotTop : kPlotBottom})
                    << value;
            EXPECT_EQ(data.graph.GetCanvas().GetLineCount(), 1 + 1 + 3 + 2 + 1)
                << "two lines besides header and cursor";
        }
    }
}

TEST(Curve, OfValuesFarOutsideOrNoNumbersDrawsWhatIsSeen) {
    // Columns where the curve must and must not be seen.
    using Case = std::tuple<const char*, std::function<double(int)>, int, int>;
    const auto spikes = [](int i) { return i == 150 ? kHuge : i == 250 ? -kHuge : 0.0; };
    for (const auto& [what, value, seenAt, unseenAt] :
         {Case{"spikes", spikes, 100, -1}, Case{"no numbers", [](int) { return NAN; }, -1, 100},
          Case{"some numbers", [](int i) { return i > 200 ? NAN : 5.0 + i; }, 100, 300},
          Case{"beyond float steps", [](int) { return 1e30; }, 100, -1}}) {
        for (const bool separate : {false, true}) {
            OneBand data;
            data.group.m_bSeparateSets = separate;
            CGraphDataSet& out = data.AddSignal(data.group, 401, [=](int) { return -kHuge; });
            out.SetColor(kRedRef);
            out.SetIgnoredForVerticalAutoScaling(true);
            data.AddSignal(data.group, 401, value);
            data.window.PaintAll();
            EXPECT_TRUE(seenAt < 0 || !data.window.Rows(seenAt, kGreen).empty()) << what << separate;
            EXPECT_TRUE(unseenAt < 0 || data.window.Rows(unseenAt, kGreen).empty()) << what << separate;
        }
    }
}

TEST(Curve, ThatLeavesThePlotSteeplyIsDrawnWhereItIsSeen) {
    OneBand data;
    data.AddSignal(data.group, 401, [](int) { return 0.0; }).SetColor(0xFF0000);
    data.AddSignal(data.group, 401, [=](int i) { return i == 150 ? -kHuge : 1.0; })
        .SetIgnoredForVerticalAutoScaling(true);
    data.window.PaintAll();
    EXPECT_GT(data.window.Count({149, 0, 2, 200}, kGreen), 170);
    EXPECT_EQ(data.window.Rows(100, kGreen), std::vector{kPlotTop});
}

TEST(Curve, ThatIsNotScaledMayLeaveThePlotButNotTheBand) {
    for (const auto& [value, visible] :
         {std::pair{0.5F, true}, {1.04F, true}, {1.2F, false}, {-0.2F, false}}) {
        OneBand data;
        data.AddGroup("Below", DisplayType::Graph).m_bExpanded = false;
        data.AddSignal(data.group, 401, [](int i) { return i / 400.0; });
        auto& line = data.graph.GetData().Make<CGraphDataOwningFixedSet>("limit");
        line.SetColor(kRedRef);
        line.SetIgnoredForVerticalAutoScaling(true);
        line.SetValue(value);
        data.group.AddSet(&line);
        data.window.PaintAll();
        EXPECT_EQ(data.window.Count(kRed) > 0, visible) << value;
    }
}

TEST(BinaryLane, IsFilledWhileTheSignalIsOnAboveAMidLine) {
    for (const int perPixel : {1, 10}) { // between two looked-at samples the edge is half way
        OneBand data;
        data.group.m_bSeparateSets = true;
        data.AddBit(data.group, 400 * perPixel + 1,
                    [=](int i) { return i >= 100 * perPixel && i < 300 * perPixel; });
        data.AddBit(data.group, 400 * perPixel + 1, [](int) { return true; }).SetColor(kRedRef);
        // What only the console shows does not count.
        data.AddSignal(data.group, 10, [](int i) { return i; }).SetDisplayType(DisplayType::Console);
        data.window.PaintAll();
        // Natural height 35: two rows of 7 in the 14 pixels between the margins, gap included.
        EXPECT_EQ(data.group.m_nHeight, 35);
        const auto rows = data.window.Rows(150, kGreen);
        ASSERT_FALSE(rows.empty());
        EXPECT_EQ(rows.front(), kPlotTop);
        EXPECT_EQ(std::ssize(rows), rows.back() - rows.front() + 1);
        const int shift = perPixel == 1 ? 0 : -1;
        for (const int x : {50, 99 + shift, 300 + shift})
            EXPECT_EQ(data.window.Rows(x, kGreen).size(), 1U) << "the mid line at " << x;
        for (const int x : {100 + shift, 299 + shift})
            EXPECT_EQ(data.window.Rows(x, kGreen), rows) << x;
        EXPECT_EQ(data.window.Rows(399, kRed).size(), rows.size());
        EXPECT_GT(data.window.Rows(150, kRed).front(), rows.back());
    }
}

TEST(SeparateRows, ScaleEachSetByItself) {
    OneBand data;
    data.group.m_bSeparateSets = true;
    data.AddSignal(data.group, 401, [](int i) { return i; });
    data.AddSignal(data.group, 401, [](int) { return 1e9; }).SetColor(kRedRef);
    data.window.PaintAll();
    const int middle = (kPlotTop + kPlotBottom) / 2;
    EXPECT_TRUE(data.window.Rows(397, kGreen, middle).empty());
    EXPECT_FALSE(data.window.Rows(1, kGreen, middle - 5, middle + 1).empty());
    EXPECT_EQ(data.window.Rows(100, kRed), std::vector{kPlotBottom})
        << "a constant lies along its row's bottom";
}
