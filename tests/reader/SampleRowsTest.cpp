// The quick road from a file to its samples against the plain algorithm, over random files.
#include "reader/rows/SampleRows.h"
#include "PlainReading.h"
#include "ReaderTesting.h"
#include "support/NumberText.h"

#include <array>
#include <bit>
#include <span>

namespace {

// Makes the text of random rows, some of them like those of a controller, some like nothing at all.
class CRowMaker {
public:
    explicit CRowMaker(unsigned seed) : m_Random(seed) {}

    int Below(int end) { return std::uniform_int_distribution(0, end - 1)(m_Random); }

    QByteArray Rows(int size) {
        const char* const lineEnd = Below(3) == 0 ? "\r\n" : "\n";
        const int oddness = Below(3); // 0: only plain fields
        const int fields = 1 + Below(9);
        QByteArray text;
        while (text.size() < size) {
            const int count = oddness > 0 && Below(20) == 0 ? Below(2 * fields) : fields;
            for (int i = 0; i < count; ++i)
                text += (i == 0 ? "" : ",") + (Below(400) < oddness ? OddField() : PlainField());
            text += lineEnd;
        }
        return text;
    }

private:
    QByteArray PlainField() {
        return QByteArray::number(std::ldexp(Below(1 << 30) - (1 << 29), Below(30) - 30), 'f', Below(8));
    }

    QByteArray OddField() {
        static const auto fields =
            QByteArray(
                "| |-|+7|.5|5.|-0|-.|abc|1e5|-1e-7|0x10|inf|nan|4000000000|-4e9|1.2.3|  12|12  |1 2|--1|"
                "123456789|1e39|1234567890|16777217.5|9e-46|\t3")
                .split('|');
        switch (Below(4)) {
        case 0:
            return QByteArray(Below(3000), '0') + "7";
        case 1:
            return "0." + QByteArray(Below(40), '3') + "5";
        case 2:
            return QByteArray::number(Below(1 << 30)) + QByteArray::number(Below(1 << 30)) + "." +
                   PlainField().mid(1);
        default:
            return fields[Below(static_cast<int>(fields.size()))];
        }
    }

    std::mt19937 m_Random;
};

// The whole document of variables of these types; one after a minus sign is not shown.
QByteArray Whole(const QByteArrayList& types, const QByteArray& data) {
    QByteArray variables;
    QByteArray lines;
    for (int i = 0; i < types.size(); ++i) {
        const QByteArray name = "Name='" + QByteArray::number(i) + "'";
        variables += "<TypedData " + name + " Type='" + types[i].mid(types[i].startsWith('-')) + "'/>";
        lines += types[i].startsWith('-') ? QByteArray() : "<Line Data" + name + "/>";
    }
    return Document(variables, "<Group Name='g'>" + lines + "</Group>", "@").replace("<Data>@</Data>", data);
}

void ExpectPlainSamples(const QByteArray& xml, const std::string& name) {
    const TestFolder folder;
    const QString path = folder.Write("a.xml", xml);
    CXmlReader reader;
    CGraphData data;
    reader.ReadAnalysis(data, path);
    EXPECT_TRUE(reader.GetResults().empty()) << name;
    ASSERT_EQ(DifferenceFromPlainReading(path, 0, data), "") << name;
}

} // namespace

TEST(SampleRows, AreWhatThePlainAlgorithmReadsInEveryFile) {
    const auto kinds = QByteArray("Float|Short|Long|UShort|ULong|Byte|UByte|Binary|-Float|-Byte").split('|');
    for (int seed = 0; seed < 60; ++seed) {
        CRowMaker make(static_cast<unsigned>(seed));
        QByteArrayList types;
        for (int i = make.Below(12); i >= 0; --i)
            types += kinds[make.Below(static_cast<int>(kinds.size()))];
        // Long rows are not looked at before they are converted.
        const bool isLong = seed % 4 == 0;
        const QByteArray rows = make.Rows(isLong ? 1'100'000 + make.Below(400'000) : make.Below(5'000));
        // What may stand around and inside the rows.
        const QByteArrayList documents{"<Data>" + rows + "</Data>",
                                       "<Data >\n\n" + rows + "\n\n</Data >",
                                       "<Data>" + rows + "&#49;&lt;,2\n" + rows + "</Data>",
                                       "<Data>" + rows + "\r3,4\r\r\n" + rows + "&#13;\n</Data>",
                                       "<Data>" + rows + "<!--,-->" + rows + "</Data>",
                                       "<x><Data>1,2</Data></x><Data>" + rows + "</Data>",
                                       "<Data>" + rows + "<![CDATA[5]]></Data><Data>6</Data>",
                                       "<Data>" + rows + "\xC3\xA4,1\n" + rows + "</Data>"};
        // A long document or two of each kind cost enough.
        for (int i = 0; i < documents.size(); ++i) {
            if (isLong && i != seed / 4 % documents.size())
                continue;
            const QByteArray document = Whole(types, documents[i]);
            ExpectPlainSamples(document, std::to_string(i) + " of " + std::to_string(seed));
            for (const char* encoding : {"ISO-8859-1", "windows-1252"}) {
                if (i == 0 && !isLong)
                    ExpectPlainSamples(
                        "<?xml version='1.0' encoding='" + QByteArray(encoding) + "'?>" + document, encoding);
            }
        }
    }
}

// Numbers of every length, with every character at every place in them, among plain neighbours.
TEST(SampleRows, BecomeTheNumberThatEachFieldAloneIs) {
    std::mt19937 random(1);
    const auto expectEach = [&](const std::string& field) {
        std::vector<std::string> fields{"12.5", "-7", "123456", "0.25", "99999.9", "8"};
        fields.resize(random() % (fields.size() + 1));
        fields.insert(fields.begin() + static_cast<std::ptrdiff_t>(random() % (fields.size() + 1)), field);
        // In most columns all fields have the same decimals, as many as those before.
        if (const int decimals = static_cast<int>(random() % 14); 0 < decimals && decimals < 9) {
            std::vector<std::string> alike;
            const bool areLong = random() % 2 == 0;
            while (alike.size() < 64 + fields.size())
                alike.push_back(
                    QByteArray::number(std::ldexp(random() % 10'000, areLong ? 10 : -4), 'f', decimals)
                        .right(areLong ? 15 : 8)
                        .toStdString());
            alike[64 + random() % fields.size()] = field;
            fields = alike;
        }
        const char* const lineEnd = random() % 2 == 0 ? "\n" : "\r\n";
        std::string rows;
        for (const std::string& each : fields)
            rows += each + "," + each + lineEnd;
        while (fields.size() < 8) { // only many rows go the quick way
            rows += "1,1" + std::string(lineEnd);
            fields.emplace_back("1");
        }
        std::vector<float> floats(fields.size());
        std::vector<int32_t> integers(fields.size());
        const std::array<SampleColumn, 2> columns{std::span(floats), std::span(integers)};
        const size_t size = rows.size();
        rows.resize(size + CRowConverter::kReadableBehind, '5');
        ASSERT_TRUE(CRowConverter(columns).Convert({rows.data(), size}, 0, fields.size()));
        for (size_t i = 0; i < fields.size(); ++i) {
            ASSERT_EQ(std::bit_cast<uint32_t>(floats[i]),
                      std::bit_cast<uint32_t>(support::ParseFloatField(fields[i])))
                << fields[i];
            ASSERT_EQ(integers[i], support::ParseIntegerField(fields[i])) << fields[i];
        }
    };
    for (size_t length = 0; length <= 40; ++length) {
        std::string digits;
        for (size_t i = 0; i < length; ++i)
            digits += static_cast<char>('0' + random() % 10);
        expectEach(digits);
        for (size_t place = 0; place <= length; ++place) {
            for (std::string field : {"", "-"})
                expectEach(field.append(digits, 0, place).append(1, '.').append(digits, place));
            for (int byte = 0; byte < 256 && place < length; ++byte) {
                std::string field = digits;
                field[place] = static_cast<char>(byte);
                if (byte != ',' && byte != '\n')
                    expectEach(field);
            }
        }
    }
    // Where floats are widest apart from what is written, around the middle of two.
    for (int i = 0; i < 200'000; ++i) {
        const auto decimals = random() % 8;
        const std::string number =
            std::to_string(random() % static_cast<unsigned>(std::pow(10, 1 + random() % 9)));
        const size_t place = number.size() - std::min<size_t>(decimals, number.size());
        std::string field(number, 0, place);
        expectEach(field.append(1, '.').append(number, place));
    }
}

TEST(SampleRows, AreReadAgainWhenTheyAreNotWhatTheyLookedLike) {
    const QByteArray rows = QByteArray("1234567,1234567\n").repeated(80'000);
    const QByteArray moreThanExpected =
        QByteArray(rows).replace(30'000, 40'000, QByteArray("\n").repeated(40'000));
    const QByteArray groups = "<Groups><Group Name='h'><Line DataName='0'/></Group></Groups>";
    // What seems to be the end of the rows is that of others, and between them stand groups.
    const QByteArray twice = "<Data>1,2\n3</Data>" + groups + "<Data>" + rows + "</Data>";
    for (const QByteArray& data : {"<Data>" + moreThanExpected + "</Data>", twice,
                                   "<Data>" + QByteArray(" \n").repeated(600'000) + "</Data>"})
        ExpectPlainSamples(Whole({"Float", "Long"}, data), data.left(20).toStdString());
    const QByteArray document = Whole({"Float", "Long"}, twice);
    ExpectPlainSamples(QByteArray(document).remove(document.indexOf("<Groups>"),
                                                   document.indexOf("<Data>") - document.indexOf("<Groups>")),
                       "no other groups");
    // Whatever else is wrong, a text that is no document is no recording.
    const TestFolder folder;
    for (const char* const type : {"Float", "Real"}) {
        CGraphData data;
        CXmlReader reader;
        reader.ReadAnalysis(data, folder.Write("a.xml", Whole({type}, "<Data>" + rows + "&none;</Data>")));
        ASSERT_EQ(reader.GetResults().size(), 1U);
        EXPECT_EQ(reader.GetResults().front().code, ResultCode::XmlParseError);
        EXPECT_FALSE(data.HasData());
    }
}

TEST(SampleRows, MayBeLongerThanThePiecesTheyAreReadIn) {
    QByteArray row;
    for (int i = 0; i < 150'000; ++i)
        row += QByteArray::number(i % 1000) + ",";
    ExpectPlainSamples(
        Whole({"Float", "Long", "UByte"}, "<Data>1\n" + row + "\n2,3\n" + row + row + "\n\n4</Data>"),
        "long");
}
