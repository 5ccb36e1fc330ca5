// How bands and console share the window.
#include "RenderTesting.h"
#include "Testing.h"
#include "render/GraphLayout.h"
#include "support/Limits.h"
#include "support/ShownText.h"

namespace {

struct Layout : ::testing::Test, GraphWithData {
    void AddSignals(CGraphDataGroup& group, int count = 1) {
        for (int i = 0; i < count; ++i)
            AddSignal(group, m_nSamples, [](int) { return 0.0; });
    }
    void AddBits(CGraphDataGroup& group, int count) {
        for (int i = 0; i < count; ++i)
            AddBit(group, m_nSamples, [](int) { return false; });
    }
    void LayOut(int height = 400) { LayoutBands(graph.GetData(), {0, 0, 300, height}); }
    const auto& Groups() { return graph.GetData().GetGroups(); }

    int m_nSamples = 10;
};

} // namespace

TEST_F(Layout, SharesTheClientHeight) {
    struct Band { // so many signals, or bits where negative; expected top, height and top margin
        int sets;
        bool separate, expanded;
        int ratio, top, height, margin;
    };
    using Case = std::tuple<const char*, int, std::vector<Band>>;
    for (const auto& [what, clientHeight, bands] :
         {Case{"collapsed groups are header rows",
               400,
               {{1, false, false, 1, 0, 17, 14}, {1, false, false, 5, 17, 17, 14}}},
          Case{"one group fills the window, its separators below it", 400, {{2, false, true, 1, 0, 403, 14}}},
          Case{"ratios share what is left, the last takes the remainders",
               400,
               {{1, false, false, 9, 0, 17, 14},
                {1, false, true, 2, 17, 2 * 383 / 3 + 3, 14},
                {1, false, true, 1, 275, 128, 14}}},
          Case{"binary-only groups come first with their natural height",
               400,
               {{1, false, true, 1, 0, 403 - 28 - 35, 14},
                {-3, false, true, 7, 340, 28, 0},
                {-2, true, true, 7, 368, 35, 14}}},
          Case{"a zero ratio gets the minimum", 400, {{1, false, true, 0, 0, 12, 0}}},
          Case{
              "a short window gives minimum heights and drops the headers",
              20,
              {{1, false, true, 1, 0, 12, 0}, {3, true, true, 1, 12, 14, 0}, {-5, true, true, 1, 26, 23, 0}}},
          Case{"29 pixels are enough for a header", 26, {{1, false, true, 1, 0, 29, 14}}},
          Case{"28 are not", 25, {{1, false, true, 1, 0, 28, 0}}}}) {
        graph.GetData().Clear();
        for (const Band& band : bands) {
            CGraphDataGroup& group = AddGroup("g");
            group.m_bSeparateSets = band.separate;
            group.m_bExpanded = band.expanded;
            group.m_nSizeRatio = band.ratio;
            AddSignals(group, band.sets);
            AddBits(group, -band.sets);
        }
        LayOut(clientHeight);
        for (size_t i = 0; i < bands.size(); ++i) {
            const CGraphDataGroup& group = *Groups()[i];
            EXPECT_EQ(std::tuple(group.m_nTop, group.m_nHeight, group.m_nTopMargin),
                      std::tuple(bands[i].top, bands[i].height, bands[i].margin))
                << what << ", " << i;
        }
    }
}

// Ratios that double the missing room with every band, up to the largest band, and then meet it with the
// smallest number divided by minus one.
TEST_F(Layout, SurvivesRoomMissingBeyondAllNumbers) {
    std::vector<int> ratios{2};
    for (int i = 0; i < 4200; ++i)
        ratios.insert(ratios.end(), {1, -1});
    ratios.insert(ratios.end(), {INT32_MIN, INT32_MAX});
    for (const int ratio : ratios) {
        CGraphDataGroup& group = AddGroup("g");
        group.m_nSizeRatio = ratio;
        AddSignals(group);
    }
    LayOut();
    EXPECT_EQ(Groups()[8399]->m_nHeight, 1 << 20) << "or no room is missing";
    EXPECT_EQ(Groups()[ratios.size() - 2]->m_nHeight, 12);
    EXPECT_EQ(Groups().back()->m_nHeight, 12);
    int top = 0;
    for (const auto& group : Groups())
        EXPECT_GE(group->m_nTop, std::exchange(top, group->m_nTop));
}

TEST_F(Layout, OfTheConsoleCountsLinesAndMeasuresTheWidestTexts) {
    AddIndex();
    CGraphDataGroup& group = AddGroup("g");
    const auto zero = [](int) { return 0; };
    AddSignal(group, "long name", m_nSamples, zero).SetUnit("mm/s", 0, 1, 2);
    for (int i = 0; i < 3; ++i)
        AddBit(group, "a bit with a very long name", m_nSamples, zero);
    AddSignal(group, "not shown there at all", m_nSamples, zero).SetDisplayType(DisplayType::Graph);
    const ConsoleMetrics console = MeasureConsole(
        graph.GetData(), [](const QString& text) { return 10 * static_cast<int>(text.size()); });
    EXPECT_EQ(Groups()[0]->m_nConsoleLines, 2);
    EXPECT_EQ(Groups()[1]->m_nConsoleLines, 2 + 1 + 1);
    EXPECT_EQ(console.width, 40 + 4 + 2 + 110 + 90);
    EXPECT_EQ(console.height, 12 * 2 + 4 + 12 * 4);
}

TEST_F(Layout, OfTheConsoleDoesNotMeasureTextsWithoutEnd) {
    CGraphDataGroup& group = AddGroup("g");
    for (int i = 0; i < 1000; ++i)
        AddSignal(group, QString(10'000 + i, u'n'), m_nSamples, [](int) { return 0; });
    int64_t measured = 0;
    MeasureConsole(graph.GetData(), [&](const QString& text) {
        measured += support::ShownText(text).size();
        return 1;
    });
    EXPECT_GE(measured, support::limits::kMaxMeasuredLength);
    EXPECT_LE(measured, support::limits::kMaxMeasuredLength * 11 / 10);
}
