#include "RenderTesting.h"
#include "render/GraphLayout.h"
#include "support/Limits.h"
#include "support/ShownText.h"

#include <gtest/gtest.h>

using namespace Tracelyn;

namespace {

enum class Kind { Signal, Bits };

struct Band {
    Kind kind;
    int sets;
    bool separate;
    bool expanded;
    int ratio;
    // Expected.
    int top;
    int height;
    int topMargin;
};

struct LayoutCase {
    const char* what;
    int clientHeight;
    std::vector<Band> bands;
};

const auto kSignal = [](int) { return 0.0; };
const auto kBit = [](int) { return false; };

} // namespace

TEST(BandLayout, SharesTheClientHeight) {
    const std::vector<LayoutCase> cases{
        {"collapsed groups are header rows",
         400,
         {{Kind::Signal, 1, false, false, 1, 0, 17, 14}, {Kind::Signal, 1, false, false, 5, 17, 17, 14}}},
        {"one group fills the window, its separators below it",
         400,
         {{Kind::Signal, 2, false, true, 1, 0, 403, 14}}},
        {"ratios share what is left, the last takes the remainders",
         400,
         {{Kind::Signal, 1, false, false, 9, 0, 17, 14},
          {Kind::Signal, 1, false, true, 2, 17, 2 * 383 / 3 + 3, 14},
          {Kind::Signal, 1, false, true, 1, 275, 128, 14}}},
        {"binary-only groups come first with their natural height",
         400,
         {{Kind::Signal, 1, false, true, 1, 0, 403 - 28 - 35, 14},
          {Kind::Bits, 3, false, true, 7, 340, 28, 0},
          {Kind::Bits, 2, true, true, 7, 368, 35, 14}}},
        {"a zero ratio gets the minimum", 400, {{Kind::Signal, 1, false, true, 0, 0, 12, 0}}},
        {"a short window gives minimum heights and drops the headers",
         20,
         {{Kind::Signal, 1, false, true, 1, 0, 12, 0},
          {Kind::Signal, 3, true, true, 1, 12, 14, 0},
          {Kind::Bits, 5, true, true, 1, 26, 23, 0}}},
        {"29 pixels are enough for a header", 26, {{Kind::Signal, 1, false, true, 1, 0, 29, 14}}},
        {"28 are not", 25, {{Kind::Signal, 1, false, true, 1, 0, 28, 0}}},
    };
    for (const LayoutCase& c : cases) {
        SCOPED_TRACE(c.what);
        GraphWithData data;
        for (const Band& band : c.bands) {
            CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
            group.m_bSeparateSets = band.separate;
            group.m_bExpanded = band.expanded;
            group.m_nSizeRatio = band.ratio;
            for (int i = 0; i < band.sets; ++i)
                band.kind == Kind::Bits ? data.AddBit(group, 1, kBit) : data.AddSignal(group, 1, kSignal);
        }
        LayoutBands(data.graph.GetData(), {0, 0, 300, c.clientHeight});
        for (size_t i = 0; i < c.bands.size(); ++i) {
            const CGraphDataGroup& group = *data.graph.GetData().GetGroups()[i];
            EXPECT_EQ(group.m_nTop, c.bands[i].top) << i;
            EXPECT_EQ(group.m_nHeight, c.bands[i].height) << i;
            EXPECT_EQ(group.m_nTopMargin, c.bands[i].topMargin) << i;
        }
    }
}

TEST(BandLayout, SurvivesAbsurdRatios) {
    GraphWithData data;
    for (const int ratio : {INT32_MAX, INT32_MIN, -5, 6, INT32_MAX}) {
        CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
        group.m_nSizeRatio = ratio;
        data.AddSignal(group, 1, kSignal);
    }
    for (int i = 0; i < 4000; ++i)
        data.AddGroup(QStringLiteral("g")).m_nSizeRatio = i % 2 == 0 ? INT32_MAX : INT32_MIN + 2;
    LayoutBands(data.graph.GetData(), {0, 0, 300, 400});
    int top = 0;
    for (const auto& group : data.graph.GetData().GetGroups()) {
        EXPECT_GE(group->m_nHeight, 12);
        EXPECT_GE(group->m_nTop, top);
        top = group->m_nTop;
    }
}

// Ratios that double the missing room with every band, up to the largest band, and then meet it with the
// smallest number divided by minus one.
TEST(BandLayout, SurvivesRoomMissingBeyondAllNumbers) {
    std::vector<int> ratios{2};
    for (int i = 0; i < 4200; ++i)
        ratios.insert(ratios.end(), {1, -1});
    ratios.insert(ratios.end(), {INT32_MIN, INT32_MAX});
    GraphWithData data;
    for (const int ratio : ratios) {
        CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
        group.m_nSizeRatio = ratio;
        data.AddSignal(group, 1, kSignal);
    }
    LayoutBands(data.graph.GetData(), {0, 0, 300, 400});
    const auto& groups = data.graph.GetData().GetGroups();
    EXPECT_EQ(groups[8399]->m_nHeight, 1 << 20) << "or no room is missing";
    EXPECT_EQ(groups[groups.size() - 2]->m_nHeight, 12);
    EXPECT_EQ(groups.back()->m_nHeight, 12);
}

TEST(ConsoleLayout, CountsLinesAndMeasuresTheWidestTexts) {
    GraphWithData data;
    data.AddIndex();
    CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
    data.AddSignal(group, 1, kSignal, 0, QStringLiteral("long name"))
        .SetUnit(QStringLiteral("mm/s"), 0, 1, 2);
    for (int i = 0; i < 3; ++i)
        data.AddBit(group, 1, kBit, 0, QStringLiteral("a bit with a very long name"));
    data.AddSignal(group, 1, kSignal, 0, QStringLiteral("not shown there at all"))
        .SetDisplayType(DisplayType::Graph);

    const auto width = [](const QString& text) { return 10 * static_cast<int>(text.size()); };
    const ConsoleMetrics console = MeasureConsole(data.graph.GetData(), width);
    EXPECT_EQ(data.graph.GetData().GetGroups()[0]->m_nConsoleLines, 2);
    EXPECT_EQ(data.graph.GetData().GetGroups()[1]->m_nConsoleLines, 2 + 1 + 1);
    EXPECT_EQ(console.widestName, 90);
    EXPECT_EQ(console.widestUnit, 40);
    EXPECT_EQ(console.numberWidth, 110);
    EXPECT_EQ(console.width, 40 + 4 + 2 + 110 + 90);
    EXPECT_EQ(console.height, 12 * 2 + 4 + 12 * 4);
}

TEST(ConsoleLayout, DoesNotMeasureTextsWithoutEnd) {
    GraphWithData data;
    CGraphDataGroup& group = data.AddGroup(QStringLiteral("g"));
    for (int i = 0; i < 1000; ++i)
        data.AddSignal(group, 1, kSignal, 0, QString(10'000 + i, QLatin1Char('n')));
    int64_t measured = 0;
    MeasureConsole(data.graph.GetData(), [&](const QString& text) {
        measured += support::ShownText(text).size();
        return 1;
    });
    EXPECT_GE(measured, support::limits::kConsoleTexts);
    EXPECT_LE(measured, support::limits::kConsoleTexts * 11 / 10);
}
