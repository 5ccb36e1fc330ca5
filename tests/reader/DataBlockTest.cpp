// How the sample rows are cut into fields, and fields become samples.
#include "reader/rows/DataBlock.h"
#include "ReaderTesting.h"
#include "reader/XmlVariable.h"
#include "reader/rows/SampleText.h"

// One whole-number variable a letter: s for one whose column is shown, - for one that is not. The samples of
// every column, "1 2|3 4".
static std::string Samples(std::string_view letters, std::string_view text) {
    CTypedDataRegistry registry;
    CGraphData data;
    std::vector<TypedDataBase*> variables;
    std::vector<const CGraphDataSet*> sets;
    for (const char letter : letters) {
        variables.push_back(CreateVariable("Long", data, registry));
        sets.push_back(letter == 's' ? &variables.back()->CreateSet() : nullptr);
    }
    EXPECT_EQ(ReadDataBlock(*SampleTextInMemory(text), variables), std::nullopt);
    QStringList columns;
    for (const CGraphDataSet* set : sets) {
        QStringList samples;
        for (int i = 0; set != nullptr && i < set->GetCount(); ++i)
            samples += QString::number(set->GetValue(i, -1));
        columns += samples.join(" ");
    }
    return columns.join("|").toStdString();
}

TEST(DataBlock, HandsTheFieldsOfEveryRowToTheVariablesInTheirOrder) {
    using Case = std::tuple<const char*, const char*, const char*>;
    for (const auto& [columns, text, samples] :
         {Case{"sss", "1,2,3,4\n4,5,6", "1 4|2 5|3 6"},
          // too few fields: from the first one again
          Case{"sss", "1,2", "1|2|1"}, Case{"sssss", "1,2\n3", "1 3|2 3|1 3|2 3|1 3"},
          Case{"sss", "1,", "1|0|1"},
          // columns that nobody shows are counted but not kept
          Case{"s-s", "1,2,3\n4,5,6", "1 4||3 6"}, Case{"-s--s-s", "1,2\n7", "|2 7|||1 7||1 7"},
          Case{"-s-", "1\n2", "|1 2|"}, Case{"--", "1,2", "|"},
          // which lines are rows
          Case{"s", "\n\n", "0"}, Case{"s", "\n1\n\n\n", "0 1"}, Case{"ss", "1,2\n\n3,4", "1 0 3|2 0 4"},
          Case{"ss", "1,2\r\n3,4\r\n", "1 3|2 4"}, Case{"ss", "1,\r2\n,\r\n\r3,\r", "1 0 3|2 0 0"}})
        EXPECT_EQ(Samples(columns, text), samples) << columns << ' ' << testing::PrintToString(text);
    EXPECT_EQ(Samples("s", std::string(5000, '0') + "7\n" + std::string(4000, ' ') + "7"), "0 7")
        << "a field is cut where no number is that long";
}

// "7\n7\n..." of which, once so many bytes are read, only a part can be read.
class CVanishingText : public CSampleText {
public:
    CVanishingText(int64_t size, int64_t readBefore, int64_t left)
        : m_nSize(size), m_nReadBefore(readBefore), m_nLeft(left) {}
    int64_t GetSize() const override { return m_nSize; }
    bool Read(int64_t at, std::span<char> text) const override {
        for (size_t i = 0; i < text.size(); ++i)
            text[i] = i % 2 == static_cast<size_t>(at) % 2 ? '7' : '\n';
        const int64_t end = at + std::ssize(text);
        const bool before = m_nRead < m_nReadBefore;
        m_nRead += std::ssize(text);
        return before || end <= m_nLeft;
    }

private:
    int64_t m_nSize;
    int64_t m_nReadBefore;
    int64_t m_nLeft;
    mutable std::atomic<int64_t> m_nRead = 0;
};

// A text of 1500001 rows that are all 7, read into one variable.
struct SevenRows {
    static constexpr int64_t kSize = 3'000'001;
    static constexpr int kRows = 1'500'001;

    SevenRows(bool isChecked, int64_t left, const support::Progress& progress = {}) {
        // All rows are counted beforehand, or a few parts.
        const CVanishingText text(kSize, isChecked ? kSize : 1 << 18, left);
        if (isChecked)
            problem = ReadDataBlock(text, {&variable, 1}, progress);
        else
            EXPECT_TRUE(ReadUncheckedBlock(text, {&variable, 1}, progress, problem));
        for (int i = 0; i < set.GetCount(); ++i)
            EXPECT_EQ(set.GetValue(i, -1), 7);
    }

    CTypedDataRegistry registry;
    CGraphData data;
    TypedDataBase* variable = CreateVariable("Float", data, registry);
    const CGraphDataSet& set = variable->CreateSet();
    std::optional<QString> problem;
};

TEST(DataBlock, KeepsWhatCouldBeReadBeforeTheFileWasGone) {
    for (const bool isChecked : {true, false}) {
        for (const auto& [left, smallest] : {std::pair<int64_t, int>{0, 0}, {1'000'000, 300'000}}) {
            const SevenRows read(isChecked, left);
            EXPECT_EQ(read.problem, "The sample rows cannot be read to their end");
            EXPECT_TRUE(read.set.GetCount() >= smallest && read.set.GetCount() <= left / 2);
        }
        const SevenRows whole(isChecked, SevenRows::kSize);
        EXPECT_TRUE(!whole.problem && whole.set.GetCount() == SevenRows::kRows);
    }
}

TEST(DataBlock, KeepsWhatWasReadWhenItIsStoppedAndSaysHowFarThatIs) {
    constexpr int kRows = SevenRows::kRows;
    for (const auto& [isChecked, end] :
         {std::pair{true, 0.0}, {true, 0.05}, {true, 0.5}, {false, 0.0}, {false, 0.5}}) {
        // While this thread rests, the others may read everything: then once more.
        int count = kRows;
        for (int round = 0; round < 100 && count == kRows; ++round) {
            const SevenRows read(isChecked, SevenRows::kSize,
                                 [end = end](double done) { return done < end; });
            count = read.set.GetCount();
            // How many rows there are is known once they are counted, and about known from parts of them.
            const QString stopped = QString("Loading was stopped after %1").arg(count);
            const QString problem = read.problem.value_or(QString());
            const double all = problem.section(' ', -3, -3).toDouble();
            EXPECT_TRUE(
                count == kRows || (count == 0 && problem == stopped + " sample rows") ||
                (isChecked ? problem == stopped + " of 1500001 sample rows"
                           : problem.startsWith(stopped + " of about ") && std::abs(all / kRows - 1) < 0.01))
                << problem.toStdString();
        }
        EXPECT_LT(count, kRows);
    }
}

// Rows that start over ask for far more than their text.
TEST(DataBlock, ReadsTheFirstRowsThatStayWithinTheLimits) {
    constexpr int kRows = 300'000;
    constexpr int kSamples = 4'194'304 + kRows;
    for (const auto& [columns, expected] : {std::pair<size_t, int>{200, kSamples / 200}, {14, kRows}}) {
        std::string text;
        for (int row = 0; row < kRows; ++row)
            text += {static_cast<char>('0' + row % 10), '\n'};
        CTypedDataRegistry registry;
        CGraphData data;
        std::vector<TypedDataBase*> variables;
        for (size_t i = 0; i < columns; ++i)
            variables.push_back(CreateVariable("UByte", data, registry));
        for (TypedDataBase* const variable : variables)
            variable->CreateSet();
        const QString problem = ReadDataBlock(*SampleTextInMemory(text), variables).value_or(QString());
        EXPECT_EQ(problem,
                  expected == kRows
                      ? QString()
                      : QStringLiteral("Only the first %1 of 300000 sample rows are shown").arg(expected));
        for (const CGraphDataSet* set : {data.GetSets().front().get(), data.GetSets().back().get()}) {
            EXPECT_EQ(set->GetCount(), expected);
            EXPECT_EQ(set->GetValue(expected - 1, -1), (expected - 1) % 10);
        }
    }
}
