// The quick road from a file to its samples against the plain algorithm, over random files.
#include "PlainReading.h"
#include "ReaderTesting.h"

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
        const QByteArray rows = make.Rows(make.Below(seed % 4 == 0 ? 900'000 : 5'000));
        // What may stand around and inside the rows.
        const QByteArrayList documents{"<Data>" + rows + "</Data>",
                                       "<Data >\n\n" + rows + "\n\n</Data >",
                                       "<Data>" + rows + "&#49;&lt;,2\n" + rows + "</Data>",
                                       "<Data>" + rows + "\r3,4\r\r\n" + rows + "&#13;\n</Data>",
                                       "<Data>" + rows + "<!--,-->" + rows + "</Data>",
                                       "<x><Data>1,2</Data></x><Data>" + rows + "</Data>",
                                       "<Data>" + rows + "<![CDATA[5]]></Data><Data>6</Data>",
                                       "<Data>" + rows + "\xC3\xA4,1\n" + rows + "</Data>"};
        // One large document of each kind costs enough.
        for (int i = 0; i < documents.size(); ++i) {
            if (seed % 4 == 0 && i != 0 && i != seed / 4 % documents.size())
                continue;
            const QByteArray document = Whole(types, documents[i]);
            ExpectPlainSamples(document, std::to_string(i) + " of " + std::to_string(seed));
            for (const char* encoding : {"ISO-8859-1", "windows-1252"}) {
                if (i == 0)
                    ExpectPlainSamples(
                        "<?xml version='1.0' encoding='" + QByteArray(encoding) + "'?>" + document, encoding);
            }
        }
    }
}

// Around the number of digits that a shorter way of reading takes.
TEST(SampleRows, MayHaveAnyNumberOfDigitsAndDecimals) {
    const QByteArray digits = "12345678901234567890";
    QByteArray rows;
    for (int count = 1; count <= digits.size(); ++count) {
        rows += digits.left(count) + "\n-" + digits.left(count) + "\n";
        for (int point = 0; point <= count; ++point)
            rows += digits.left(count).insert(point, '.') + "\n";
    }
    ExpectPlainSamples(Whole({"Float", "Long", "ULong", "Short"}, "<Data>" + rows + "</Data>"), "digits");
}

TEST(SampleRows, MayBeLongerThanThePiecesTheyAreReadIn) {
    QByteArray row;
    for (int i = 0; i < 150'000; ++i)
        row += QByteArray::number(i % 1000) + ",";
    ExpectPlainSamples(
        Whole({"Float", "Long", "UByte"}, "<Data>1\n" + row + "\n2,3\n" + row + row + "\n\n4</Data>"),
        "long");
}
