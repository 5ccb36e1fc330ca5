// Tables of numbers as text files.
#include "ReaderTesting.h"
#include "model/GraphDataVariants.h"
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"
#include "reader/csv/NumberLines.h"

#include <QBuffer>

static std::string Exported(const CGraphData& data) {
    QBuffer device;
    CCsvFile file;
    EXPECT_TRUE(device.open(QIODevice::WriteOnly) && file.Open(device));
    ExportCsv(data, file);
    file.Close();
    return device.data().toStdString();
}

TEST(CsvExport, WritesFixedSetsFirstAndThenOneColumnForEachOtherSetAsOftenAsItIsListed) {
    const QByteArray variables =
        "<TypedData Name='V' Type='Short' Description='v'/><TypedData Name='W' Type='Float' Description='w'>"
        "<Unit UnitOffset='1' UnitFactor='2' Precision='2'/></TypedData>";
    using Case = std::pair<const char*, const char*>;
    for (const auto& [groups, csv] :
         {Case{"", "\r\n\r\n\r\n\"Time\"\r\n0\r\n"},
          Case{"<Group Name='A'><RefLine Name='a,&quot;b' Value='1.5'/><Line DataName='V'/></Group>"
               "<Group Name='B'><Line DataName='W'/><Line DataName='V'/><RefLine Name='&#181;&#937;' "
               "Value='-7'/></Group>",
               "\"a,\"b\",\"\xb5?\"\r\n1.500000,-7.000000\r\n\r\n\"Time\",\"v\",\"w\",\"v\"\r\n0,1,2.25,"
               "1\r\n2,-"
               "2,10.00,-2\r\n"}}) {
        CGraphData data;
        const TestFolder folder;
        CXmlReader().ReadAnalysis(data,
                                  folder.Write("a.xml", Document(variables, groups, "1,0.125\n-2,4",
                                                                 "<Unit UnitFactor='2' Precision='0'/>")));
        EXPECT_EQ(Exported(data), csv);
    }
    EXPECT_EQ(Exported(CGraphData()), "\r\n\r\n\r\n\r\n") << "an empty model";
}

// Takes so many bytes, refuses one write and takes all others.
class CFailingDevice : public QBuffer {
public:
    explicit CFailingDevice(qint64 room) : m_nRoom(room) { open(WriteOnly | Unbuffered); }

protected:
    qint64 writeData(const char* data, qint64 size) override {
        const qint64 taken = m_nRoom == 0 ? -1 : std::min(size, m_nRoom);
        m_nRoom = taken < 0 ? INT64_MAX : m_nRoom - taken;
        return taken < 0 ? taken : QBuffer::writeData(data, taken);
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

    // While this thread rests, the others may finish the table: then once more.
    ExportEnd end = ExportEnd::Complete;
    for (int round = 0; round < 100 && end == ExportEnd::Complete; ++round) {
        QBuffer part;
        CCsvFile stopped;
        ASSERT_TRUE(part.open(QIODevice::WriteOnly) && stopped.Open(part));
        end = ExportCsv(data, stopped, [](double) { return false; });
        stopped.Close();
        EXPECT_EQ(part.size() < std::ssize(expected), end == ExportEnd::Stopped);
        EXPECT_TRUE(expected.starts_with(part.data().toStdString()));
    }
    EXPECT_EQ(end, ExportEnd::Stopped);

    CFailingDevice device(500'000);
    CCsvFile file;
    ASSERT_TRUE(file.Open(device));
    EXPECT_THROW(ExportCsv(data, file), CFileException);
    EXPECT_TRUE(device.data().toStdString() == expected.substr(0, 500'000));
}

// Lines cost a load nothing, and a table one field for each row: a hostile file asks for millions of them.
TEST(CsvExport, WritesNoTableOfFarMoreValuesThanAreRecorded) {
    CGraphData data;
    CGraphDataTypedSource<uint8_t> source;
    source.Append(500'000);
    auto group = std::make_unique<CGraphDataGroup>("g");
    for (int line = 0; line < 68; ++line)
        group->AddSet(&data.Make<CGraphDataTypedSet<uint8_t>>("n", &source));
    data.AddGroup(std::move(group));
    QBuffer device;
    CCsvFile file;
    ASSERT_TRUE(device.open(QIODevice::WriteOnly) && file.Open(device));
    EXPECT_EQ(ExportCsv(data, file), ExportEnd::TooLarge);
    file.Close();
    EXPECT_EQ(device.size(), 0);
}

// Short, long and absurdly long fields.
TEST(CsvFile, LinesOfNumbersAreTheFieldsOneByOne) {
    std::mt19937 random(1);
    for (const auto& [rows, decimals] : {std::pair<size_t, std::vector<int>>{0, {3}},
                                         {1, {-1, 1000, 0}},
                                         {3000, {0, 1, 2, 3, 6, 12, 7}},
                                         {2000, {4}},
                                         {40, std::vector<int>(100, 999)}}) {
        std::vector<float> values(rows * decimals.size());
        for (size_t at = 0; at < values.size(); ++at) // a third of the rows is short
            values[at] = at % rows * 3 < rows ? static_cast<float>(random() % 100'000) / -8
                                              : std::bit_cast<float>(static_cast<uint32_t>(random()));
        QBuffer fields;
        CCsvFile one;
        ASSERT_TRUE(fields.open(QIODevice::WriteOnly) && one.Open(fields));
        for (size_t row = 0; row < rows; ++row) {
            for (size_t column = 0; column < decimals.size(); ++column)
                one.WriteNumberField(values[column * rows + row], decimals[column]);
            one.EndLine();
        }
        one.Close();
        CNumberLines lines(decimals, rows);
        EXPECT_TRUE(lines.Format(values) == fields.data().toStdString()) << rows;
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
    EXPECT_THROW(CCsvFile().Open("/proc/self/comm"), CFileException)
        << "a file that could only be written over";
    EXPECT_FALSE(CCsvFile().Open("/proc/self/new"));
}
#endif

TEST(CsvFile, TakesAnOlderFilesPlaceOnlyWhenItIsClosedAndWhole) {
    const TestFolder folder;
    const QString path = folder.Path("\u0416.csv");
    const auto write = [&](const std::string& text, bool interrupted) {
        CCsvFile file;
        ASSERT_TRUE(file.Open(path));
        file.AppendText(text);
        file.Flush();
        file.WriteIntegerField(std::numeric_limits<int>::min());
        EXPECT_FALSE(TestFolder::Read(path).startsWith(text.c_str()));
        if (interrupted)
            throw std::runtime_error("out of the export");
    };
    write("the longer first text", false);
    EXPECT_THROW(write("new", true), std::runtime_error);
    EXPECT_EQ(TestFolder::Read(path), "the longer first text-2147483648");
    write("new", false);
    EXPECT_EQ(TestFolder::Read(path), "new-2147483648");
    EXPECT_EQ(folder.Entries(), QStringList("\u0416.csv")) << "nothing beside it";
    EXPECT_FALSE(CCsvFile().Open(folder.Folder()));
}
