// What all sets have in common, and the sets that are no plain sampled signal.
#include "GraphDataVariants.h"
#include "ModelTesting.h"

#include <climits>
#include <cmath>
#include <cstdlib>

namespace {

std::string Properties(const CGraphDataSet& set) {
    return QString("%1, %2 %3 * %4, %5 decimals, shown %6, ignored %7")
        .arg(set.GetName(), set.GetUnit())
        .arg(double{set.GetUnitOffset()})
        .arg(double{set.GetUnitFactor()})
        .arg(set.GetPrecision())
        .arg(static_cast<int>(set.GetDisplayType()))
        .arg(set.IsIgnoredForVerticalAutoScaling())
        .toStdString();
}

} // namespace

TEST(MinMax, IsHalfOpenReadsTheFirstValueAndNeverTakesANaN) {
    struct Case {
        int from, to;
        MinMax found;
    };
    for (const auto& [from, to, found] :
         {Case{0, 4, {1, 7}}, Case{0, 2, {3, 3}}, Case{3, 3, {7, 7}}, Case{3, 2, {7, 7}},
          Case{1, 4, {NAN, NAN}}, Case{4, 6, {0.0F, 0.0F}}, Case{5, 6, {-0.0F, -0.0F}},
          Case{6, 8, {0.1F, HUGE_VALF}}, Case{-1, 1, {0, 3}}}) {
        CGraphData data;
        const auto& set = data.Make<ListSet>("set", std::vector<double>{3, NAN, 1, 7, 0.0, -0.0, 1e300, 0.1});
        EXPECT_EQ(MinMaxBits(set, from, to), Bits(found)) << from << ".." << to;
    }
}

TEST(MinMax, KeepsTheLastAnswerByItsIndicesWhateverChanges) {
    CGraphData data;
    auto& set = data.Make<ListSet>("set", std::vector<double>{1, 2, 3});
    EXPECT_EQ(MinMaxBits(set, 0, 3), Bits({1, 3}));
    set.values = {-5, 2, 9};
    const int reads = set.reads;
    EXPECT_EQ(MinMaxBits(set, 0, 3), Bits({1, 3}));
    EXPECT_EQ(set.reads, reads);
    EXPECT_EQ(MinMaxBits(set, 0, 2), Bits({-5, 2}));
    EXPECT_EQ(MinMaxBits(set, 0, 3), Bits({-5, 9}));
}

TEST(MinMax, ReadsTheValuesForTheFirstQueryOfANamedSet) {
    for (const int to : {0, 1, -1, INT_MIN}) {
        CGraphData data;
        EXPECT_EQ(MinMaxBits(data.Make<ListSet>("set", std::vector<double>{5}), 0, to), Bits({5, 5})) << to;
    }
    CGraphData data;
    auto& nameless = data.Make<ListSet>();
    nameless.values = {5};
    EXPECT_EQ(MinMaxBits(nameless, 0, 0), Bits({0, 0}));
    EXPECT_EQ(MinMaxBits(nameless, 0, 1), Bits({5, 5}));
}

TEST(GraphDataSet, SetsItsPropertiesThroughSetUnitAndResetsAllButTheName) {
    class Metric : public ListSet {
    public:
        using ListSet::ListSet;
        void SetUnit(const QString& /*unit*/, float offset, float factor, int precision) override {
            CGraphDataSet::SetUnit("m", offset, factor, precision);
        }
    };
    CGraphData data;
    auto& set = data.Make<Metric>("set");
    set.SetProperties("Y1", "ft", 100.0F, 0.5F, 2);
    set.SetDisplayType(DisplayType::None);
    set.SetIgnoredForVerticalAutoScaling(true);
    EXPECT_EQ(Properties(set), "Y1, m 100 * 0.5, 2 decimals, shown 0, ignored 1");

    std::srand(7);
    ColorRef color = 0;
    for (const int shift : {0, 8, 16})
        color |= (static_cast<ColorRef>(std::rand()) & 0xDFU) << shift;
    std::srand(7);
    set.Reset();
    EXPECT_EQ(Properties(set), "Y1,  0 * 1, 6 decimals, shown 3, ignored 0");
    EXPECT_EQ(set.GetColor(), color);
}

TEST(IndexSet, MeasuresFromTheReferenceWithoutTheOffset) {
    CGraphData data;
    auto& set = data.Make<CGraphDataIndexSet>("Time");
    set.SetUnit("ms", 100.0F, 0.5F, 0);
    struct Case {
        int index, reference;
        double value, scaled;
    };
    for (const Case& expected :
         {Case{10, -1, 10, 55}, Case{10, 4, 6, 3}, Case{4, 10, -6, -3}, Case{7, 0, 7, 3.5},
          Case{7, -2, 9, 4.5}, Case{-5, -1, -5, 47.5}, Case{INT_MIN, 1, INT_MAX, 1073741824}}) {
        EXPECT_EQ(set.GetValue(expected.index, expected.reference), expected.value) << expected.index;
        EXPECT_EQ(set.GetScaledValue(expected.index, expected.reference), expected.scaled) << expected.index;
    }
    EXPECT_EQ(set.GetCount(), 1);
    EXPECT_EQ(set.GetColor(), 0xFF0000U);
    EXPECT_EQ(MinMaxBits(set, -5, 300), Bits({-5, 299}));
    ExpectBatchesGiveSingleValues(set, -7, 3, 600);
}

TEST(FixedSet, ShowsItsOneValueAtEveryIndex) {
    CGraphData data;
    float value = 2.5F;
    auto& fixed = data.Make<CGraphDataFixedSet>("fixed", &value);
    auto& line = data.Make<CGraphDataOwningFixedSet>("line");
    line.SetValue(2.5F);
    for (CGraphDataFixedSet* set : {&fixed, static_cast<CGraphDataFixedSet*>(&line)}) {
        set->SetUnit("mm", 1.0F, 0.1F, 0);
        EXPECT_EQ(set->GetCount(), 1);
        EXPECT_EQ(set->GetColor(), 0x602020U);
        EXPECT_EQ(set->GetValue(INT_MIN, 3), 2.5);
        EXPECT_EQ(set->GetScaledValue(7, 3), double{0.35F});
        EXPECT_EQ(MinMaxBits(*set, -4, 90), Bits({2.5F, 2.5F}));
    }
    value = 7.0F;
    line.SetValue(8.0F);
    EXPECT_EQ(fixed.GetValue(0, -1), 7.0);
    EXPECT_EQ(MinMaxBits(line, -4, 90), Bits({2.5F, 2.5F}));
    EXPECT_EQ(MinMaxBits(line, -4, 91), Bits({8.0F, 8.0F}));
}
