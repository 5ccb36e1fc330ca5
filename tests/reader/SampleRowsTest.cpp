// The quick road from a file to its samples against the plain algorithm, over random files.
#include "model/GraphData.h"
#include "reader/XmlReader.h"
#include "support/NumberText.h"
#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <random>
#include <string>
#include <vector>

using namespace Tracelyn;

using namespace Tracelyn;

namespace {

constexpr std::array kTypes{"Float", "Short", "Long", "UShort", "ULong", "Byte", "UByte", "Binary"};

struct Variable {
    size_t type;
    bool isShown;
};

// Makes the text of random rows, some of them like those of a controller, some like nothing at all.
class CRowMaker {
public:
    explicit CRowMaker(unsigned seed) : m_Random(seed) {}

    int Below(int end) { return std::uniform_int_distribution(0, end - 1)(m_Random); }

    std::string Rows(size_t size) {
        const std::string lineEnd = Below(3) == 0 ? "\r\n" : "\n";
        const int oddness = Below(3); // 0: only plain fields
        const int fields = 1 + Below(9);
        std::string text;
        while (text.size() < size) {
            const int count = oddness > 0 && Below(20) == 0 ? Below(2 * fields) : fields;
            for (int i = 0; i < count; ++i) {
                text += i == 0 ? "" : ",";
                text += Below(400) < oddness ? OddField() : PlainField();
            }
            text += lineEnd;
        }
        return text;
    }

private:
    std::string PlainField() {
        const double value = std::ldexp(double(Below(1 << 30)) - (1 << 29), Below(30) - 30);
        std::array<char, 64> buffer;
        std::snprintf(buffer.data(), buffer.size(), "%.*f", Below(8), value);
        return buffer.data();
    }

    std::string OddField() {
        static const std::array fields{
            "",     " ",     "-",    "+7",        ".5",   "5.",         "-0",         "-.",    "abc",
            "1e5",  "-1e-7", "0x10", "inf",       "nan",  "4000000000", "-4e9",       "1.2.3", "  12",
            "12  ", "1 2",   "--1",  "123456789", "1e39", "1234567890", "16777217.5", "9e-46", "\t3"};
        switch (Below(4)) {
        case 0:
            return std::string(static_cast<size_t>(Below(3000)), '0') + "7";
        case 1:
            return "0." + std::string(static_cast<size_t>(Below(40)), '3') + "5";
        case 2:
            return std::to_string(Below(1 << 30)) + std::to_string(Below(1 << 30)) + "." +
                   PlainField().substr(1);
        default:
            return fields[static_cast<size_t>(Below(int(fields.size())))];
        }
    }

    std::mt19937 m_Random;
};

std::string Document(const std::vector<Variable>& variables, const std::string& data) {
    std::string text =
        "<Analysis><DataDefinition><IndexSet Name='i'><Unit/></IndexSet><VariablesDefinitions>";
    std::string lines;
    for (size_t i = 0; i < variables.size(); ++i) {
        const std::string name = std::to_string(i);
        text += "<TypedData Name='" + name + "' Description='" + name + "' Type='" +
                kTypes[variables[i].type] + "'/>";
        if (variables[i].isShown)
            lines += "<Line DataName='" + name + "'/>";
    }
    return text + "</VariablesDefinitions></DataDefinition><Groups><Group Name='g'>" + lines +
           "</Group></Groups>" + data + "</Analysis>";
}

double PlainSample(size_t type, std::string_view field) {
    field = field.substr(0, 4096);
    const int32_t integer = support::ParseIntegerField(field);
    switch (type) {
    case 0:
        return support::ParseFloatField(field);
    case 1:
        return static_cast<int16_t>(integer);
    case 2:
        return integer;
    case 3:
        return static_cast<uint16_t>(integer);
    case 4:
        return static_cast<uint32_t>(integer);
    default:
        return static_cast<uint8_t>(integer);
    }
}

// The samples of every variable, row by row and field by field.
std::vector<std::vector<double>> PlainSamples(const std::vector<Variable>& variables, std::string text) {
    while (text.ends_with('\n'))
        text.pop_back();
    text += '\n';
    std::vector<std::vector<double>> samples(variables.size());
    for (size_t from = 0; from < text.size();) {
        const size_t end = text.find('\n', from);
        const std::string_view row = std::string_view(text).substr(from, end - from);
        size_t at = 0;
        for (size_t i = 0; i < variables.size(); ++i) {
            const size_t comma = row.find(',', at);
            samples[i].push_back(PlainSample(variables[i].type, row.substr(at, comma - at)));
            at = comma == std::string_view::npos ? 0 : comma + 1;
        }
        from = end + 1;
    }
    return samples;
}

void ExpectPlainSamples(const std::vector<Variable>& variables, const std::string& xml,
                        const std::string& name) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.xml");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) &&
                file.write(QByteArray::fromStdString(xml)) == std::ssize(xml));
    file.close();
    CXmlDomDocument document;
    CXmlDomElement root;
    CXmlDomElement block;
    QString error;
    ASSERT_TRUE(document.Load(path, error)) << error.toStdString();
    ASSERT_TRUE(document.GetRootElement(root) && root.GetChildByName("Data", block));
    const auto expected = PlainSamples(variables, std::string(block.GetTextUtf8()));

    CXmlReader reader;
    CGraphData data;
    reader.ReadAnalysis(data, path);
    EXPECT_TRUE(reader.GetResults().empty());
    for (const CGraphDataSet* set : data.GetGroups().back()->m_Sets) {
        const auto& column = expected[set->GetName().toUInt()];
        ASSERT_EQ(set->GetCount(), std::ssize(column)) << name;
        for (int i = 0; i < set->GetCount(); ++i) {
            const double sample = set->GetValue(i, kNoReference);
            ASSERT_EQ(std::bit_cast<uint64_t>(sample),
                      std::bit_cast<uint64_t>(column[static_cast<size_t>(i)]))
                << name << ", variable " << set->GetName().toStdString() << ", row " << i << ": " << sample;
        }
    }
}

} // namespace

TEST(SampleRows, AreWhatThePlainAlgorithmReadsInEveryFile) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        CRowMaker make(seed);
        std::vector<Variable> variables;
        for (int i = make.Below(12); i >= 0; --i)
            variables.push_back({static_cast<size_t>(make.Below(int(kTypes.size()))), make.Below(5) != 0});
        const std::string rows = make.Rows(static_cast<size_t>(make.Below(seed % 4 == 0 ? 900'000 : 5'000)));
        // What may stand around and inside the rows.
        const std::array documents{
            std::pair{"plain", Document(variables, "<Data>" + rows + "</Data>")},
            std::pair{"spaced", Document(variables, "<Data >\n\n" + rows + "\n\n</Data >")},
            std::pair{"reference", Document(variables, "<Data>" + rows + "&#49;&lt;,2\n" + rows + "</Data>")},
            std::pair{"return",
                      Document(variables, "<Data>" + rows + "\r3,4\r\r\n" + rows + "&#13;\n</Data>")},
            std::pair{"comment", Document(variables, "<Data>" + rows + "<!--,-->" + rows + "</Data>")},
            std::pair{"nested", Document(variables, "<x><Data>1,2</Data></x><Data>" + rows + "</Data>")},
            std::pair{"cdata", Document(variables, "<Data>" + rows + "<![CDATA[5]]></Data><Data>6</Data>")},
            std::pair{"letters", Document(variables, "<Data>" + rows + "\xC3\xA4,1\n" + rows + "</Data>")},
            std::pair{"latin", "<?xml version='1.0' encoding='ISO-8859-1'?>" +
                                   Document(variables, "<Data>" + rows + "</Data>")},
            std::pair{"japanese", "<?xml version='1.0' encoding='Shift_JIS'?>" +
                                      Document(variables, "<Data>" + rows + "</Data>")}};
        // One large document of each kind costs enough.
        for (size_t i = 0; i < documents.size(); ++i) {
            if (seed % 4 != 0 || i == 0 || i == seed / 4 % documents.size())
                ExpectPlainSamples(variables, documents[i].second,
                                   std::string(documents[i].first) + " " + std::to_string(seed));
        }
    }
}

TEST(SampleRows, MayBeLongerThanThePiecesTheyAreReadIn) {
    std::string row;
    for (int i = 0; i < 150'000; ++i)
        row += std::to_string(i % 1000) + ",";
    const std::vector<Variable> variables{{0, true}, {2, true}, {6, true}};
    ExpectPlainSamples(
        variables, Document(variables, "<Data>1\n" + row + "\n2,3\n" + row + row + "\n\n4</Data>"), "long");
}
