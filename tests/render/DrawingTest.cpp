#include "RenderTesting.h"
#include "render/GraphDrawingContext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Tracelyn;

namespace {

const QColor kGreen(0, 255, 0);
const QColor kRed(255, 0, 0);

bool HasColor(const RecordingWindow& window, const QColor& color) {
    for (int y = 0; y < window.GetImage().height(); ++y) {
        for (int x = 0; x < window.GetImage().width(); ++x) {
            if (window.At(x, y) == color)
                return true;
        }
    }
    return false;
}

// One group shown in the graph only: 400 x 200, plot rows 14 to 196 (bottom exclusive).
struct OneBand : GraphWithData {
    OneBand() : group(AddGroup(QStringLiteral("Band"), DisplayType::Graph)) { graph.SetResetPending(); }

    void Paint(RecordingWindow& window) { window.PaintAll(); }

    CGraphDataGroup& group;
};

constexpr QSize kSize(400, 200);
constexpr int kPlotTop = 14;
constexpr int kPlotBottom = 196;

} // namespace

TEST(Header, ShowsBoxNameUnderlineAndSeparators) {
    for (const bool dark : {true, false}) {
        const ColorScheme& colors = dark ? ColorScheme::Dark() : ColorScheme::Light();
        OneBand data;
        CGraphDataGroup& second = data.AddGroup(QStringLiteral("Second"), DisplayType::Graph);
        second.m_bExpanded = false;
        RecordingWindow window(data.graph, kSize);
        if (!dark)
            data.graph.ToggleBackground(window);
        data.Paint(window);

        EXPECT_EQ(window.At(1, 1), colors.boxPen);
        EXPECT_EQ(window.At(9, 9), colors.boxPen);
        EXPECT_EQ(window.At(10, 5), colors.background);
        EXPECT_EQ(window.At(2, 2), colors.boxBrush);
        EXPECT_EQ(window.At(3, 5), colors.boxPen);
        EXPECT_EQ(window.At(8, 5), colors.boxBrush) << "the minus ends before";
        EXPECT_EQ(window.At(5, 3), colors.boxBrush) << "an expanded group shows no plus";
        EXPECT_EQ(window.At(5, second.m_nTop + 3), colors.boxPen) << "a collapsed one does";
        EXPECT_EQ(window.At(11, 10), colors.underline);
        EXPECT_EQ(window.At(11, second.m_nTop + 10), colors.background)
            << "only the selected group is underlined";
        for (int i = 1; i <= 3; ++i)
            EXPECT_EQ(window.At(399, data.group.m_nHeight - i), colors.separator);
        EXPECT_EQ(window.At(399, data.group.m_nHeight - 4), colors.background);

        const SCREENRECT* const name = data.graph.GetCanvas().FindScreenRect(QStringLiteral("Second"));
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(name->top, second.m_nTop);
        EXPECT_EQ(name->right, 200);
        EXPECT_EQ(name->bottom, second.m_nTop + 13);
    }
}

TEST(Curve, SpansThePlotFromMaximumToMinimum) {
    for (const bool inverted : {false, true}) {
        OneBand data;
        data.group.m_bInverted = inverted;
        data.AddSignal(data.group, 401, [](int i) { return i; });
        RecordingWindow window(data.graph, kSize);
        data.Paint(window);
        // The maximum of the visible range is sample 399; the cursor stands at 200.
        const int left = inverted ? kPlotTop : kPlotBottom;
        EXPECT_FALSE(RowsOf(window, 1, kGreen, left - 3, left + 3).empty());
        const int right = inverted ? kPlotBottom : kPlotTop;
        EXPECT_FALSE(RowsOf(window, 397, kGreen, right - 4, right + 4).empty());
        EXPECT_FALSE(RowsOf(window, 100, kGreen, inverted ? 55 : 146, inverted ? 64 : 155).empty());
    }
}

TEST(Curve, ThatNeverChangesIsOneLineAlongTheEdge) {
    for (const bool inverted : {false, true}) {
        OneBand data;
        data.group.m_bInverted = inverted;
        data.AddSignal(data.group, 1000, [](int) { return 42.0; });
        RecordingWindow window(data.graph, kSize);
        data.Paint(window);
        const int row = inverted ? kPlotTop : kPlotBottom;
        for (const int x : {0, 100, 399})
            EXPECT_EQ(RowsOf(window, x, kGreen, 0, 200), std::vector{row});
        EXPECT_EQ(data.graph.GetCanvas().GetLineCount(), 1 + 1 + 3 + 2 + 1)
            << "two lines besides header and cursor";
    }
}

TEST(Curve, CostsAtMostTwoLinesAPixelHoweverManySamples) {
    OneBand data;
    data.AddSignal(data.group, 300000, [](int i) { return i % 7; });
    RecordingWindow window(data.graph, kSize);
    data.Paint(window);
    EXPECT_LE(data.graph.GetCanvas().GetLineCount(), 2 * 410 + 10);
    EXPECT_TRUE(HasColor(window, kGreen));
}

TEST(Curve, OfValuesFarOutsideOrNoNumbersDrawsWhatIsSeen) {
    const float huge = std::numeric_limits<float>::max();
    struct Case {
        const char* what;
        std::function<double(int)> value;
        // Columns where the curve must and must not be seen.
        int seenAt, unseenAt;
    };
    for (const auto& [what, value, seenAt, unseenAt] :
         {Case{"spikes", [=](int i) { return i == 150   ? huge
                                             : i == 250 ? -huge
                                                        : 0.0; }, 100, -1},
          Case{"infinities", [](int i) { return i % 2 == 0 ? INFINITY : -INFINITY; }, -1, -1},
          Case{"no numbers", [](int) { return NAN; }, -1, 100},
          Case{"some numbers", [](int i) { return i > 200 ? NAN : 5.0 + i; }, 100, 300},
          Case{"beyond float steps", [](int) { return 1e30; }, 100, -1}}) {
        for (const bool separate : {false, true}) {
            OneBand data;
            data.group.m_bSeparateSets = separate;
            auto& out = data.AddSignal(
                data.group, 401, [=](int) { return -huge; }, 0x0000FF);
            out.SetIgnoredForVerticalAutoScaling(true);
            data.AddSignal(data.group, 401, value);
            RecordingWindow window(data.graph, kSize);
            data.Paint(window);
            if (seenAt >= 0) {
                EXPECT_FALSE(RowsOf(window, seenAt, kGreen, 0, 200).empty()) << what << separate;
            }
            if (unseenAt >= 0) {
                EXPECT_TRUE(RowsOf(window, unseenAt, kGreen, 0, 200).empty()) << what << separate;
            }
        }
    }
}

TEST(Curve, ThatLeavesThePlotSteeplyIsDrawnWhereItIsSeen) {
    const float huge = std::numeric_limits<float>::max();
    OneBand data;
    data.AddSignal(
        data.group, 401, [](int) { return 0.0; }, 0xFF0000);
    auto& spike = data.AddSignal(data.group, 401, [=](int i) { return i == 150 ? -huge : 1.0; });
    spike.SetIgnoredForVerticalAutoScaling(true);
    RecordingWindow window(data.graph, kSize);
    data.Paint(window);
    EXPECT_GT(RowsOf(window, 150, kGreen, 0, 200).size() + RowsOf(window, 149, kGreen, 0, 200).size(), 170U);
    EXPECT_EQ(RowsOf(window, 100, kGreen, 0, 200), std::vector{kPlotTop});
}

TEST(Curve, ThatIsNotScaledMayLeaveThePlotButNotTheBand) {
    OneBand data;
    CGraphDataGroup& below = data.AddGroup(QStringLiteral("Below"), DisplayType::Graph);
    below.m_bExpanded = false;
    data.AddSignal(data.group, 401, [](int i) { return i / 400.0; });
    auto& line = data.graph.GetData().Make<CGraphDataOwningFixedSet>(QStringLiteral("limit"));
    line.SetColor(0x0000FF);
    line.SetIgnoredForVerticalAutoScaling(true);
    data.group.AddSet(&line);
    struct Case {
        float value;
        bool visible;
    };
    for (const auto& [value, visible] : {Case{0.5F, true}, {1.04F, true}, {1.2F, false}, {-0.2F, false}}) {
        line.SetValue(value);
        RecordingWindow window(data.graph, kSize);
        data.Paint(window);
        EXPECT_EQ(HasColor(window, kRed), visible) << value;
    }
}

TEST(BinaryLane, IsFilledWhileTheSignalIsOnAboveAMidLine) {
    OneBand data;
    CGraphDataGroup& lanes = data.group;
    lanes.m_bSeparateSets = true;
    data.AddBit(
        lanes, 401, [](int i) { return i >= 100 && i < 300; }, 0x00FF00);
    data.AddBit(
        lanes, 401, [](int) { return true; }, 0x0000FF);
    RecordingWindow window(data.graph, kSize);
    data.Paint(window);
    // Natural height 35: two rows of 7 in the 14 pixels between the margins, gap included.
    EXPECT_EQ(lanes.m_nHeight, 35);
    const auto rows = RowsOf(window, 150, kGreen, 0, 35);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front(), kPlotTop);
    EXPECT_EQ(static_cast<int>(rows.size()), rows.back() - rows.front() + 1);
    EXPECT_EQ(RowsOf(window, 50, kGreen, 0, 35).size(), 1U) << "the mid line";
    EXPECT_EQ(RowsOf(window, 99, kGreen, 0, 35).size(), 1U);
    EXPECT_EQ(RowsOf(window, 100, kGreen, 0, 35), rows);
    EXPECT_EQ(RowsOf(window, 300, kGreen, 0, 35).size(), 1U);
    EXPECT_EQ(RowsOf(window, 399, kRed, 0, 35).size(), rows.size());
    EXPECT_GT(RowsOf(window, 150, kRed, 0, 35).front(), rows.back());
}

TEST(SeparateRows, ScaleEachSetByItself) {
    OneBand data;
    data.group.m_bSeparateSets = true;
    data.AddSignal(data.group, 401, [](int i) { return i; });
    data.AddSignal(
        data.group, 401, [](int) { return 1e6; }, 0x0000FF);
    RecordingWindow window(data.graph, kSize);
    data.Paint(window);
    const int middle = (kPlotTop + kPlotBottom) / 2;
    EXPECT_TRUE(RowsOf(window, 397, kGreen, middle, 200).empty());
    EXPECT_FALSE(RowsOf(window, 1, kGreen, middle - 5, middle + 1).empty());
    EXPECT_EQ(RowsOf(window, 100, kRed, 0, 200), std::vector{kPlotBottom})
        << "a constant lies along its row's bottom";
}
