#include "DataBlock.h"

#include "GraphData.h"
#include "XmlVariable.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using namespace Tracelyn;

namespace {

// One whole-number variable a letter: s for one whose column is shown, - for one that is not.
class Columns {
public:
    explicit Columns(std::string_view letters) {
        for (const char letter : letters) {
            variables.push_back(CreateVariable("Long", data));
            m_Sets.push_back(letter == 's' ? &variables.back()->CreateSet() : nullptr);
        }
    }

    // The samples of every column, "1 2|3 4".
    std::string Samples() const {
        QStringList columns;
        for (const CGraphDataSet* set : m_Sets) {
            QStringList samples;
            for (int i = 0; set != nullptr && i < set->GetCount(); ++i)
                samples += QString::number(set->GetValue(i, -1));
            columns += samples.join(" ");
        }
        return columns.join("|").toStdString();
    }

    CGraphData data;
    std::vector<TypedDataBase*> variables;

private:
    std::vector<CGraphDataSet*> m_Sets;
};

} // namespace

TEST(DataBlock, HandsTheFieldsOfEveryRowToTheVariablesInTheirOrder) {
    struct Case {
        const char* columns;
        const char* text;
        const char* samples;
    };
    for (const Case& expected : {
             Case{"sss", "1,2,3\n4,5,6", "1 4|2 5|3 6"},
             {"sss", "1,2,3,4", "1|2|3"},
             // too few fields: from the first one again
             {"sss", "1,2", "1|2|1"},
             {"sssss", "1,2\n3", "1 3|2 3|1 3|2 3|1 3"},
             {"sss", "1,", "1|0|1"},
             {"sss", ",", "0|0|0"},
             // columns that nobody shows are counted but not kept
             {"s-s", "1,2,3\n4,5,6", "1 4||3 6"},
             {"-s-", "1\n2", "|1 2|"},
             {"--", "1,2", "|"},
             // which lines are rows
             {"s", "", "0"},
             {"s", "\n\n", "0"},
             {"s", "\n1\n", "0 1"},
             {"s", "1\n\n\n", "1"},
             {"s", "1\n\n2", "1 0 2"},
             {"ss", "1,2\n\n3,4", "1 0 3|2 0 4"},
             {"ss", "1,2\r\n3,4\r\n", "1 3|2 4"},
             {"ss", "\r\n1\r\n\r\n", "0 1 0|0 1 0"},
         }) {
        Columns columns(expected.columns);
        ReadDataBlock(expected.text, columns.variables);
        EXPECT_EQ(columns.Samples(), expected.samples)
            << expected.columns << ' ' << testing::PrintToString(expected.text);
    }
}

TEST(DataBlock, ReadsAsManyRowsAsThereAreAndAppendsThem) {
    for (const auto& [columnCount, rows] :
         std::initializer_list<std::pair<int, int>>{{2, 511}, {2, 512}, {2, 1600}, {300, 500}, {70000, 3}}) {
        Columns columns(std::string(static_cast<size_t>(columnCount), 's'));
        QByteArray text;
        QStringList first;
        QStringList others;
        for (int i = 0; i < rows; ++i) {
            first += QString::number(i);
            others += QString::number(-i);
            text += first.back().toLatin1() +
                    QByteArray("," + others.back().toLatin1()).repeated(columnCount - 1) + "\n";
        }
        ReadDataBlock(text.toStdString(), columns.variables);
        ReadDataBlock(text.toStdString(), columns.variables);
        const QString other = "|" + (others + others).join(" ");
        EXPECT_TRUE(columns.Samples() ==
                    ((first + first).join(" ") + other.repeated(columnCount - 1)).toStdString())
            << columnCount << " x " << rows;
    }
}

TEST(DataBlock, IsBoundedByItsText) {
    Columns columns("s");
    ReadDataBlock(std::string(5000, '0') + "7\n" + std::string(4000, ' ') + "7", columns.variables);
    EXPECT_EQ(columns.Samples(), "0 7") << "a field is cut where no number is that long";

    Columns many(std::string(20'000, 's'));
    EXPECT_THROW(ReadDataBlock(std::string(1000, '\n') + "1", many.variables), std::length_error);
    EXPECT_EQ(many.variables.front()->CreateSet().GetCount(), 0);
}
