// What all sets have in common, and the sets that are no plain sampled signal.
#include "ModelTesting.h"
#include "model/GraphDataVariants.h"

TEST(MinMax, IsHalfOpenReadsTheFirstValueAndNeverTakesANaN) {
    CGraphData data;
    auto& set = data.Make<ListSet>("set");
    set.values = {3, NAN, 1, 7, 0.0, -0.0, 1e300, 0.1};
    using Case = std::tuple<int, int, MinMax>;
    for (const auto& [from, to, found] :
         {Case{0, 4, {1, 7}}, Case{0, 2, {3, 3}}, Case{3, 3, {7, 7}}, Case{3, 2, {7, 7}},
          Case{1, 4, {NAN, NAN}}, Case{4, 6, {0.0F, 0.0F}}, Case{5, 6, {-0.0F, -0.0F}},
          Case{6, 8, {0.1F, HUGE_VALF}}, Case{-1, 1, {0, 3}}})
        EXPECT_EQ(MinMaxBits(set, from, to), Bits(found)) << from << ".." << to;
}

TEST(MinMax, KeepsTheLastAnswerByItsIndicesWhateverChanges) {
    CGraphData data;
    auto& set = data.Make<ListSet>("set");
    auto& nameless = data.Make<ListSet>();
    set.values = nameless.values = {1, 2, 3};
    EXPECT_EQ(MinMaxBits(set, 0, 0), Bits({1, 1}));
    EXPECT_EQ(MinMaxBits(nameless, 0, 0), Bits({0, 0})) << "starts with an answer to this one query";
    set.values = {-5, 2, 9};
    EXPECT_EQ(MinMaxBits(set, 0, 0), Bits({1, 1}));
    EXPECT_EQ(MinMaxBits(set, 0, 3), Bits({-5, 9}));
    EXPECT_EQ(MinMaxBits(set, 0, 0), Bits({-5, -5}));
}

TEST(IndexAndFixedSet, MeasureFromTheReferenceWithoutTheOffsetAndNotAtAll) {
    CGraphData data;
    auto& set = data.Make<CGraphDataIndexSet>("Time");
    set.SetUnit("ms", 100.0F, 0.5F, 0);
    EXPECT_EQ(set.GetScaledValue(10, -1), 55.0);
    EXPECT_EQ(set.GetScaledValue(4, 10), -3.0);
    EXPECT_EQ(set.GetValue(7, -2), 9.0);
    EXPECT_EQ(set.GetValue(INT_MIN, 1), INT_MAX);
    ExpectBatchesGiveSingleValues(set, -7, 3, 600);
    for (const auto& [from, to] : {std::pair{3, 900}, std::pair{-5, -4}, std::pair{7, 7}, std::pair{7, 2}})
        EXPECT_EQ(MinMaxBits(set, from, to), Bits({float(from), float(std::max(from, to - 1))}));
    auto& line = data.Make<CGraphDataOwningFixedSet>("line");
    line.SetValue(2.5F);
    line.SetUnit("mm", 1.0F, 0.1F, 0);
    EXPECT_EQ(line.GetScaledValue(7, 3), double{0.35F});
    EXPECT_EQ(MinMaxBits(line, 0, INT_MAX), Bits({2.5F, 2.5F}));
}
