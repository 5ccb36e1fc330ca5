// The whole road of a document: from bytes to the model, its figures, its layout, frames and the CSV table.
//
// A seed ends with a comment, <!--...-->, whose characters choose how it is shown.
#include "Driving.h"
#include "FuzzInput.h"
#include "Measuring.h"
#include "PlainReading.h"
#include "Scratch.h"
#include "reader/AnalysisFile.h"
#include "reader/csv/CsvExport.h"
#include "reader/csv/CsvFile.h"
#include "reader/rows/SampleText.h"
#include "render/Graph.h"
#include "support/Limits.h"

#include <QBuffer>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

using namespace Tracelyn;

namespace limits = support::limits;

namespace {

// Comparisons and tables that would take longer than the reading are left out.
constexpr int64_t kManyValues = 100'000;

int64_t CountValues(const CGraphData& data) {
    return int64_t{data.GetMaxCount()} * static_cast<int64_t>(data.GetSets().size());
}

bool AreSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Values in a row and their extremes, as reading them one by one gives them.
void CheckBatches(const CGraphDataSet& set, int from, int to, int step) {
    std::array<double, 64> values;
    set.GetValues(from, step, values);
    int index = from;
    for (const double value : values) {
        Require(AreSame(value, set.GetValue(index, kNoReference)), "values in a row are the single values");
        index += step;
    }
    auto smallest = static_cast<float>(set.GetValue(from, kNoReference));
    float largest = smallest;
    for (int i = from; i < to; ++i) {
        const auto value = static_cast<float>(set.GetValue(i, kNoReference));
        smallest = smallest > value ? value : smallest;
        largest = value > largest ? value : largest;
    }
    float min = 0;
    float max = 0;
    set.GetMinMax(from, to, min, max);
    Require(AreSame(min, smallest) && AreSame(max, largest), "extremes are those of the single values");
}

void CheckLimits(const Analysis& analysis, const CGraphData& data) {
    Require(analysis.results.size() <= limits::kMaxProblems + 5,
            "problems beyond the limit are only counted");
    for (const ReadResult& result : analysis.results) {
        Require(!result.GetText().isEmpty(), "a problem has a text");
        Require(!result.detail.startsWith(QLatin1String("The sample rows cannot be read")),
                "the rows of a file that stays as it is can be read");
    }
    for (const auto& set : data.GetSets())
        Require(set->GetName().size() <= limits::kMaxNameLength &&
                    set->GetUnit().size() <= limits::kMaxNameLength,
                "long texts are cut");
}

void CheckModel(const CGraphData& data, Settings& settings) {
    if (CountValues(data) > kManyValues)
        return;
    const int count = data.GetMaxCount();
    const int from = static_cast<int>(settings.Byte()) * count / 200 - 3;
    const int to = from + static_cast<int>(settings.Byte()) * count / 200;
    const int step = static_cast<int>(settings.Below(7)) + 1;
    for (const auto& set : data.GetSets())
        CheckBatches(*set, from, to, step);
    CheckMeasures(data, from, to);
}

void Export(const CGraph& graph) {
    QBuffer table;
    table.open(QIODevice::WriteOnly);
    CCsvFile file;
    file.Open(table);
    graph.ExportCsv(file);
    file.Close();
    Require(table.data().endsWith("\r\n"), "a table ends with a line end");
}

// The reader looks at pieces far longer than an input. Some documents get a long comment before
// their rows, or a long first field, that ends shortly before the end of a piece.
std::string Stretched(std::string_view document, Settings& settings) {
    constexpr auto kPiece = static_cast<size_t>(CSampleText::kPieceBytes);
    const unsigned choice = settings.Below(32);
    const size_t length = kPiece - settings.Below(64);
    const size_t tag = std::min(document.find("<Data>"), document.find("<Data "));
    const size_t rows = document.find('>', tag);
    std::string text(document);
    if (choice == 1 && tag != std::string_view::npos)
        text.insert(tag, "<!--" + std::string(length > tag ? length - tag : 0, 'c') + "-->");
    if (choice == 2 && rows != std::string_view::npos)
        text.insert(rows + 1, length, '0');
    if (choice == 3 && rows != std::string_view::npos)
        text.insert(rows + 1, length / 8, '\n');
    return text;
}

void Run(std::string_view input) {
    constexpr size_t kCommentEnd = 3;
    Settings settings(input, kCommentEnd);
    const std::string document = Stretched(input, settings);
    const QString path = ScratchFolder() + QStringLiteral("input.xml");
    WriteFile(path, document);

    CGraph graph;
    const auto accessLevel = static_cast<int>(settings.Below(4));
    const Analysis analysis = LoadAnalysis(path, accessLevel, graph.GetData());
    CheckLimits(analysis, graph.GetData());
    CheckModel(graph.GetData(), settings);
    Drive(graph, settings);
    if (CountValues(graph.GetData()) > kManyValues)
        return;
    if (analysis.results.empty()) {
        const std::string broken = DifferenceFromPlainReading(path, accessLevel, graph.GetData());
        Require(broken.empty(), broken.c_str());
    }
    Export(graph);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int programOnly = 1;
    static const QGuiApplication application(programOnly, *argv);
    return *argc > 0 ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Run(TextOf(data, size));
    return 0;
}
