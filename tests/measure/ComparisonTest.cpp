// Two recordings: which signals belong together, and how far they are apart.
#include "measure/Comparison.h"
#include "Testing.h"
#include "model/GraphData.h"
#include "model/GraphDataVariants.h"

namespace {

struct Recording {
    // "Group: signal onOff? line= Other: ..."
    explicit Recording(const QString& outline) {
        for (const QString& word : outline.split(' ')) {
            const QString name = word.chopped(1);
            if (word.endsWith(':'))
                data.AddGroup(std::make_unique<CGraphDataGroup>(name));
            else if (word.endsWith('?'))
                data.GetGroups().back()->AddSet(&data.Make<CGraphDataBinarySet>(name, &bits));
            else if (word.endsWith('='))
                data.GetGroups().back()->AddSet(&data.Make<CGraphDataOwningFixedSet>(name));
            else
                data.GetGroups().back()->AddSet(&data.Make<CGraphDataTypedSet<float>>(word, &source));
        }
    }

    CGraphDataTypedSource<float> source;
    CGraphDataTypedSource<uint8_t> bits;
    CGraphData data;
};

} // namespace

TEST(Comparison, MatchesSignalsByGroupNameAndKind) {
    const Recording good("A: x y z? line= x B: x w A: v");
    const Recording other("B: x line= A: line= x z y? y x A: w v");
    std::string found;
    for (const auto& [group, set, compared] : MatchSignals(good.data, other.data)) {
        found += (group->m_strName + set->GetName()).toStdString();
        const auto& sets = other.data.GetSets();
        const auto at = std::ranges::find(sets, compared, [](const auto& own) { return own.get(); });
        found += compared == nullptr ? "- " : std::to_string(at - sets.begin()) + " ";
    }
    EXPECT_EQ(found, "Ax3 Ay6 Az- Bx0 Bw- ");
}

TEST(Comparison, FindsTheDeviationWhereBothHaveFiniteValues) {
    Recording good("A: x");
    Recording other("A: x");
    std::mt19937 random(7);
    for (int i = 0; i < 400'000; ++i) {
        good.source.Add(random() % 50 == 0 ? NAN : float(random() % 1000));
        other.source.Add(random() % 50 == 0 ? HUGE_VALF : float(random() % 1000));
    }
    other.source.Add(0);
    auto& values = *other.data.GetSets().front();
    values.SetUnit("mm", 0.5F, 0.1F, 1);
    for (const int shift : {0, 1, -3, 399'990, -399'999, 400'001, -400'000, INT_MAX, INT_MIN}) {
        long double squares = 0;
        Deviation plain{.largest = -1};
        for (int64_t i = 0; i < values.GetCount(); ++i) {
            if (i - shift < 0 || i - shift >= 400'000)
                continue;
            const double distance = std::abs(values.GetScaledValue(int(i), -1) -
                                             good.data.GetSets().front()->GetScaledValue(int(i - shift), -1));
            if (!std::isfinite(distance))
                continue;
            squares += static_cast<long double>(distance) * distance;
            ++plain.count;
            if (distance > plain.largest) {
                plain.largest = distance;
                plain.at = int(i);
            }
        }
        const Deviation found = Compare(*good.data.GetSets().front(), values, shift);
        EXPECT_EQ(found.count, plain.count) << shift;
        EXPECT_EQ(found.at, plain.at) << shift;
        EXPECT_TRUE(plain.count == 0 ? std::isnan(found.largest) : found.largest == plain.largest) << shift;
        const auto rms = double(std::sqrt(squares / static_cast<long double>(plain.count)));
        EXPECT_TRUE(plain.count == 0 ? std::isnan(found.rms) : std::abs(found.rms / rms - 1) < 1e-12)
            << shift;
    }
}
