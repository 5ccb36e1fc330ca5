#include "CsvExport.h"
#include "CsvFile.h"
#include "GraphData.h"
#include "GraphDataTypedSet.h"
#include "GraphDataVariants.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

using Tracelyn::CCsvFile;
using Tracelyn::CFileException;
using Tracelyn::ExportCsv;

namespace {

// Remembers how long each write was, and takes no more than it has room for.
class Chunks : public QIODevice {
public:
    explicit Chunks(qint64 room = std::numeric_limits<qint64>::max()) : m_Room(room) {
        open(QIODevice::WriteOnly);
    }

    std::vector<qint64> sizes;
    std::string text;

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (size > m_Room) {
            setErrorString(QStringLiteral("no room"));
            return -1;
        }
        m_Room -= size;
        sizes.push_back(size);
        text.append(data, static_cast<size_t>(size));
        return size;
    }

private:
    qint64 m_Room;
};

using Samples = std::vector<float>;

class CsvExport : public ::testing::Test {
protected:
    CsvExport() { AddGroup(); }

    void AddGroup() { m_Data.AddGroup(std::make_unique<CGraphDataGroup>(QStringLiteral("group"))); }
    void List(CGraphDataSet& set) { m_Data.GetGroups().back()->AddSet(&set); }

    void AddFixed(const QString& name, float value, int decimals) {
        auto& set = m_Data.Make<CGraphDataOwningFixedSet>(name);
        set.SetValue(value);
        set.SetPrecision(decimals);
        List(set);
    }

    CGraphDataSet& AddSampled(const QString& name, int decimals, const Samples& values) {
        auto& source = m_Sources.emplace_back(std::make_unique<CGraphDataTypedSource<float>>());
        for (const float value : values)
            source->Add(value);
        auto& set = m_Data.Make<CGraphDataTypedSet<float>>(name, source.get());
        set.SetPrecision(decimals);
        List(set);
        return set;
    }

    std::string Exported() const {
        Chunks device;
        CCsvFile file;
        EXPECT_TRUE(file.Open(device));
        ExportCsv(m_Data, file);
        file.Close();
        return device.text;
    }

    std::vector<std::unique_ptr<CGraphDataTypedSource<float>>> m_Sources;
    CGraphData m_Data;
};

TEST_F(CsvExport, WritesFixedSetsFirstAndThenOneColumnForEachSampledSet) {
    AddFixed(QStringLiteral("F1"), 1.5F, 1);
    AddSampled(QStringLiteral("A"), 0, {1.0F, -2.0F, 3.0F});
    AddGroup();
    AddSampled(QStringLiteral("B"), 2, {0.125F, 4.0F, -0.001F}).SetUnit(QStringLiteral("mm"), 1.0F, 2.0F, 2);
    AddFixed(QStringLiteral("F2"), -7.0F, 3);
    EXPECT_EQ(Exported(),
              "\"F1\",\"F2\"\r\n1.5,-7.000\r\n\r\n\"A\",\"B\"\r\n1,2.25\r\n-2,10.00\r\n3,2.00\r\n");
}

TEST_F(CsvExport, KeepsItsEmptyLinesWhenThereIsNothingToShow) {
    EXPECT_EQ(Exported(), "\r\n\r\n\r\n\r\n");
    m_Data.Make<CGraphDataOwningFixedSet>(QStringLiteral("listed by no group"));
    EXPECT_EQ(Exported(), "\r\n\r\n\r\n\r\n");
    AddFixed(QStringLiteral("F"), 2.0F, 0);
    EXPECT_EQ(Exported(), "\"F\"\r\n2\r\n\r\n\r\n");
    AddSampled(QStringLiteral("no samples"), 0, {});
    EXPECT_EQ(Exported(), "\"F\"\r\n2\r\n\r\n\"no samples\"\r\n");
}

TEST_F(CsvExport, ShorterSetsRepeatTheirLastSampleAndTheIndexCounts) {
    auto& index = m_Data.Make<CGraphDataIndexSet>(QStringLiteral("Time"));
    index.SetUnit(QStringLiteral("ms"), 0.0F, 2.0F, 0);
    List(index);
    List(AddSampled(QStringLiteral("A"), 0, {5.0F}));
    AddSampled(QStringLiteral("B"), 0, {1.0F, 2.0F, 3.0F});
    EXPECT_EQ(Exported(), "\r\n\r\n\r\n\"Time\",\"A\",\"A\",\"B\"\r\n0,5,5,1\r\n2,5,5,2\r\n4,5,5,3\r\n");
}

TEST_F(CsvExport, LongTablesKeepTheirOrder) {
    Samples values;
    std::string expected = "\r\n\r\n\r\n\"A\",\"B\"\r\n";
    for (int i = 0; i < 1000; ++i) {
        values.push_back(static_cast<float>(i));
        expected += std::to_string(i) + ',' + std::to_string(i) + "\r\n";
    }
    AddSampled(QStringLiteral("A"), 0, values);
    AddSampled(QStringLiteral("B"), 0, values);
    EXPECT_EQ(Exported(), expected);
}

TEST_F(CsvExport, NamesAreQuotedButNotEscapedAndNarrowed) {
    AddFixed(QStringLiteral("a,\"b"), 0.0F, 0);
    AddFixed(QStringLiteral("\u00b5\u03a9"), 0.0F, 0);
    EXPECT_EQ(Exported(), "\"a,\"b\",\"\xb5?\"\r\n0,0\r\n\r\n\r\n");
}

TEST(CsvFile, NumbersTakeAnyCountOfDecimals) {
    for (const auto& [value, decimals, expected] : std::initializer_list<std::tuple<float, int, std::string>>{
             {0.1F, 10, "0.1000000015"},
             {2.5F, 0, "2"},
             {-0.0F, 0, "-0"},
             {1.0F, -1, "1.000000"},
             {1.0F, 5000, "1." + std::string(1000, '0')},
             {std::numeric_limits<float>::lowest(), 1, "-340282346638528859811704183484516925440.0"},
             {std::numeric_limits<float>::infinity(), 3, "inf"}}) {
        Chunks device;
        CCsvFile file;
        ASSERT_TRUE(file.Open(device));
        file.WriteNumberField(value, decimals);
        file.WriteIntegerField(std::numeric_limits<int>::min());
        file.EndLine();
        file.Close();
        EXPECT_EQ(device.text, expected + ",-2147483648\r\n");
    }
}

TEST(CsvFile, FlushesTheWholePendingTextAbove4096Characters) {
    Chunks device;
    CCsvFile file;
    ASSERT_TRUE(file.Open(device));
    file.WriteField(std::string(4095, 'a'));
    file.WriteField("");
    EXPECT_EQ(device.sizes, std::vector<qint64>());
    file.WriteField("b");
    EXPECT_EQ(device.sizes, std::vector<qint64>{4097});
    file.AppendText(std::string(4096, 'c'));
    file.WriteStringField(QStringLiteral("field that is not split"));
    EXPECT_EQ(device.sizes, (std::vector<qint64>{4097, 4097}));
    file.Close();
    EXPECT_EQ(device.sizes, (std::vector<qint64>{4097, 4097, 26}));
}

TEST(CsvFile, WriteErrorsComeOutOfAppendFlushAndCloseButNotOfTheDestructor) {
    const std::string large(5000, 'x');
    Chunks full(10);
    {
        CCsvFile file;
        ASSERT_TRUE(file.Open(full));
        EXPECT_THROW(file.WriteField(large), CFileException);
        file.WriteField("small");
        file.Flush();
        file.WriteField("too much");
        EXPECT_THROW(file.Flush(), CFileException);
        file.WriteField("too much");
        EXPECT_THROW(file.Close(), CFileException);
        EXPECT_NO_THROW(file.Close());
        ASSERT_TRUE(file.Open(full));
        file.WriteField("swallowed");
    }
    EXPECT_EQ(full.text, "small");

    CCsvFile closed;
    closed.WriteField("nowhere to go");
    EXPECT_THROW(closed.Flush(), CFileException);
}

TEST(CsvFile, AFullDiskIsNoticed) {
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "no /dev/full here";
    CCsvFile file;
    ASSERT_TRUE(file.Open(QStringLiteral("/dev/full")));
    file.WriteField("text");
    try {
        file.Close();
        FAIL() << "no exception";
    } catch (const CFileException& error) {
        EXPECT_STRNE(error.what(), "");
    }
}

TEST(CsvFile, TruncatesAnExistingFileAndWritesPendingTextWhenDestroyed) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("\u0416.csv"));
    for (const char* text : {"the longer first text", "short"}) {
        CCsvFile file;
        ASSERT_TRUE(file.Open(path));
        EXPECT_FALSE(file.Open(path));
        file.WriteField(text);
    }
    QFile written(path);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "short");
    EXPECT_FALSE(CCsvFile().Open(folder.path()));
    EXPECT_FALSE(CCsvFile().Open(folder.filePath(QStringLiteral("missing/x.csv"))));
}

} // namespace
