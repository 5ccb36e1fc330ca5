#include "model/GraphData.h"
#include "model/GraphDataTypedSet.h"
#include "reader/XmlReader.h"
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

using namespace Tracelyn;

using namespace Tracelyn;

static std::string Exported(const CGraphData& data) {
    QBuffer device;
    CCsvFile file;
    EXPECT_TRUE(device.open(QIODevice::WriteOnly) && file.Open(device));
    ExportCsv(data, file);
    file.Close();
    return device.data().toStdString();
}

TEST(CsvExport, WritesFixedSetsFirstAndThenOneColumnForEachOtherSetAsOftenAsItIsListed) {
    using Case = std::pair<const char*, const char*>;
    for (const auto& [groups, csv] :
         {Case{"", "\r\n\r\n\r\n\"t\"\r\n0\r\n"},
          Case{"<Group Name='A'><RefLine Name='a,&quot;b' Value='1.5'/><Line DataName='V'/></Group>"
               "<Group Name='B'><Line DataName='W'/><Line DataName='V'/><RefLine Name='&#181;&#937;' "
               "Value='-7'/></Group>",
               "\"a,\"b\",\"\xb5?\"\r\n1.500000,-7.000000\r\n\r\n\"t\",\"v\",\"w\",\"v\"\r\n0,1,2.25,1\r\n2,-"
               "2,10.00,-2\r\n"}}) {
        QTemporaryFile xml;
        ASSERT_TRUE(xml.open());
        xml.write("<Analysis><DataDefinition><IndexSet Name='t'><Unit UnitFactor='2' "
                  "Precision='0'/></IndexSet><VariablesDefinitions>"
                  "<TypedData Name='V' Type='Short' Description='v'/><TypedData Name='W' Type='Float' "
                  "Description='w'>"
                  "<Unit UnitOffset='1' UnitFactor='2' "
                  "Precision='2'/></TypedData></VariablesDefinitions></DataDefinition><Groups>" +
                  QByteArray(groups) + "</Groups><Data>1,0.125\n-2,4</Data></Analysis>");
        xml.close();
        CGraphData data;
        CXmlReader().ReadAnalysis(data, xml.fileName());
        EXPECT_EQ(Exported(data), csv);
    }
    EXPECT_EQ(Exported(CGraphData()), "\r\n\r\n\r\n\r\n") << "an empty model";
}

// Takes so many bytes, refuses one write and takes all others.
class CFailingDevice : public QIODevice {
public:
    explicit CFailingDevice(qint64 room) : m_nRoom(room) { open(WriteOnly | Unbuffered); }

    QByteArray m_Written;

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (m_nRoom == 0) {
            m_nRoom = INT64_MAX;
            return -1;
        }
        const qint64 taken = std::min(size, m_nRoom);
        m_nRoom -= taken;
        m_Written.append(data, taken);
        return taken;
    }

private:
    qint64 m_nRoom;
};

// So many rows that several threads set them.
TEST(CsvExport, KeepsTheOrderOfRowsAndEndsAtAWriteError) {
    constexpr int kRows = 200'000;
    CGraphData data;
    CGraphDataTypedSource<int> source;
    CGraphDataSet& set = data.Make<CGraphDataTypedSet<int>>("n", &source);
    set.SetPrecision(0);
    auto group = std::make_unique<CGraphDataGroup>("g");
    group->AddSet(&set);
    data.AddGroup(std::move(group));
    std::string expected = "\r\n\r\n\r\n\"n\"\r\n";
    for (int row = 0; row < kRows; ++row) {
        source.Add(row);
        expected += std::to_string(row) + "\r\n";
    }
    EXPECT_TRUE(Exported(data) == expected);

    CFailingDevice device(500'000);
    CCsvFile file;
    ASSERT_TRUE(file.Open(device));
    EXPECT_THROW(ExportCsv(data, file), CFileException);
    EXPECT_TRUE(device.m_Written.toStdString() == expected.substr(0, 500'000));
}

TEST(CsvFile, FlushesTheWholePendingTextAbove4096Characters) {
    QBuffer device;
    CCsvFile file;
    ASSERT_TRUE(device.open(QIODevice::WriteOnly) && file.Open(device));
    file.WriteField(std::string(4095, 'a'));
    file.WriteField("");
    EXPECT_EQ(device.size(), 0);
    file.WriteField("b");
    EXPECT_EQ(device.size(), 4097);
    file.AppendText(std::string(4096, 'c'));
    file.WriteStringField("field that is not split");
    EXPECT_EQ(device.size(), 2 * 4097);
    file.Close();
    EXPECT_EQ(device.size(), 2 * 4097 + 26);
}

// Short, long and absurdly long fields.
TEST(CsvFile, LinesOfNumbersAreTheFieldsOneByOne) {
    std::mt19937 random(1);
    for (const auto& [rows, decimals] : {std::pair<size_t, std::vector<int>>{0, {3}},
                                         {1, {-1, 1000, 0}},
                                         {3000, {0, 1, 2, 3, 6, 12, 7}},
                                         {40, std::vector<int>(100, 999)}}) {
        std::vector<float> values(rows * decimals.size());
        for (float& value : values)
            value = std::bit_cast<float>(static_cast<uint32_t>(random()));
        QBuffer fields;
        CCsvFile one;
        ASSERT_TRUE(fields.open(QIODevice::WriteOnly) && one.Open(fields));
        for (size_t row = 0; row < rows; ++row) {
            for (size_t column = 0; column < decimals.size(); ++column)
                one.WriteNumberField(values[column * rows + row], decimals[column]);
            one.EndLine();
        }
        one.Close();
        CNumberLines lines(values.size());
        EXPECT_TRUE(lines.Format(values, decimals) == fields.data().toStdString()) << rows;
    }
}

#ifdef Q_OS_LINUX
TEST(CsvFile, WriteErrorsComeOutOfAppendFlushAndCloseButNotOfTheDestructor) {
    CCsvFile file;
    ASSERT_TRUE(file.Open("/dev/full"));
    EXPECT_THROW(file.WriteField(std::string(4097, 'x')), CFileException);
    EXPECT_NO_THROW(file.Flush()) << "the text is dropped";
    file.WriteField("text");
    EXPECT_THROW(file.Close(), CFileException);
    ASSERT_TRUE(file.Open("/dev/full"));
    file.WriteField("the destructor swallows this");
}

// A file that could be written over, in a folder that takes no file.
TEST(CsvFile, WritesOverNothingThatItCouldLose) {
    EXPECT_THROW(CCsvFile().Open("/proc/self/comm"), CFileException);
    EXPECT_FALSE(CCsvFile().Open("/proc/self/new"));
}
#endif

TEST(CsvFile, TruncatesAnExistingFileAndWritesPendingTextWhenDestroyed) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("\u0416.csv");
    for (const char* text : {"the longer first text", "short"}) {
        CCsvFile file;
        ASSERT_TRUE(file.Open(path));
        file.WriteField(text);
        file.WriteIntegerField(std::numeric_limits<int>::min());
    }
    QFile written(path);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "short,-2147483648");
    EXPECT_FALSE(CCsvFile().Open(folder.path()));
}

TEST(CsvFile, TakesAnOlderFilesPlaceOnlyWhenItIsClosedAndWhole) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("old.csv");
    const auto content = [&] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const auto write = [&](const QByteArray& text, bool interrupted) {
        CCsvFile file;
        ASSERT_TRUE(file.Open(path));
        file.AppendText(std::string_view(text.data(), static_cast<size_t>(text.size())));
        file.Flush();
        EXPECT_NE(content(), text);
        if (interrupted)
            throw std::runtime_error("out of the export");
    };
    write("old", false);
    EXPECT_THROW(write("new", true), std::runtime_error);
    EXPECT_EQ(content(), "old");
    write("new", false);
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList("old.csv")) << "nothing beside it";
}
