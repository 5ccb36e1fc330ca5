// Rows of a million bytes and more, which the reader converts before anybody has checked them, against what a
// reader makes of the same file that checks them first.
//
// An input is a small document that ends with a comment, <!--...-->, whose characters choose how it becomes a
// long one: plain rows, a part of them different from the others, and the document's own rows written over
// them in some places.
#include "FuzzInput.h"
#include "Scratch.h"
#include "model/GraphData.h"
#include "model/GraphDataGroup.h"
#include "model/GraphDataSet.h"
#include "reader/XmlReader.h"
#include "reader/XmlVariable.h"
#include "reader/rows/SampleText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

using namespace Tracelyn;

namespace {

constexpr auto kPiece = static_cast<size_t>(CSampleText::kPieceBytes);

// A document cut around its rows.
struct Document {
    std::string_view before;
    std::string_view rows;
    std::string_view behind;
};

std::optional<Document> CutAroundRows(std::string_view text) {
    const size_t tag = std::min(text.find("<Data>"), text.find("<Data "));
    const size_t tagEnd = text.find('>', tag);
    const size_t end = text.rfind("</Data");
    if (tag == std::string_view::npos || tagEnd == std::string_view::npos || end == std::string_view::npos ||
        end <= tagEnd)
        return std::nullopt;
    return Document{text.substr(0, tagEnd + 1), text.substr(tagEnd + 1, end - tagEnd - 1), text.substr(end)};
}

std::string Repeated(std::string_view part, size_t size) {
    std::string text;
    text.reserve(size + part.size());
    while (text.size() < size)
        text += part;
    text.resize(size);
    return text;
}

// Writes over the text from `at` on; what does not fit makes the text longer.
void WriteOver(std::string& text, size_t at, std::string_view part) {
    text.replace(std::min(at, text.size()), part.size(), part);
}

std::string LongRows(std::string_view rows, Settings& settings) {
    const std::array<std::string_view, 4> fillers{"12.5,-7,1\n", "-1234.25,8,0\r\n", "1,22,333,4444,55555\n",
                                                  rows.empty() ? "\n" : rows};
    const std::string_view filler = fillers[settings.Below(fillers.size())];
    // Around the length from which on rows are read unchecked, and around whole pieces.
    const size_t pieces = 4 + settings.Below(3);
    const size_t size = kPiece * pieces + settings.Below(96) - 80;
    std::string text = Repeated(filler, size);

    // A part, at most the whole text, with more or fewer row ends than the guess of their number lets expect.
    constexpr std::array<std::string_view, 7> kOthers{"\n", "\r\n", "1\n", "          \n", ",", "0", "\r"};
    const unsigned other = settings.Below(2 * kOthers.size());
    const size_t from = size * settings.Below(64) / 63;
    const size_t length = size * settings.Below(64) / 63;
    if (other < kOthers.size())
        WriteOver(text, from, Repeated(kOthers[other], std::min(length, size - from)));

    constexpr unsigned kEnd = 7; // a place behind all pieces
    for (unsigned left = 1 + settings.Below(4); left > 0; --left) {
        const size_t limit = kPiece * settings.Below(kEnd + 1);
        const size_t place = limit + settings.Below(64);
        WriteOver(text, place - std::min<size_t>(place, 32), rows);
    }
    return text;
}

bool HaveSameBytes(std::span<const std::byte> one, std::span<const std::byte> other) {
    return one.size() == other.size() &&
           (one.empty() || std::memcmp(one.data(), other.data(), one.size()) == 0);
}

bool AreSame(const SampleSpan& one, const SampleSpan& other) {
    if (one.index() != other.index())
        return false;
    return std::visit(
        [&]<class Span>(const Span& samples) {
            if constexpr (std::is_same_v<Span, std::monostate>)
                return true;
            else
                return HaveSameBytes(std::as_bytes(samples), std::as_bytes(std::get<Span>(other)));
        },
        one);
}

// What a reader makes of a file.
struct Reading {
    CTypedDataRegistry registry;
    CGraphData data;
    CXmlReader reader{registry};
};

void Read(Reading& reading, const QString& path, int accessLevel) {
    reading.reader.SetAccessLevel(accessLevel);
    reading.reader.ReadAnalysis(reading.data, path);
}

// A reader that has read something before checks all rows before it converts them.
void ReadCheckedFirst(Reading& reading, const QString& path, int accessLevel) {
    const QString nothing = ScratchFolder() + QStringLiteral("nothing.xml");
    WriteFile(nothing,
              "<Analysis><DataDefinition><IndexSet Name='t'><Unit/></IndexSet><VariablesDefinitions/>"
              "</DataDefinition><Groups/><Data/></Analysis>");
    CGraphData unused;
    reading.reader.ReadAnalysis(unused, nothing);
    Require(reading.reader.GetResults().empty(), "a document without rows is read");
    Read(reading, path, accessLevel);
}

void CompareResults(const CXmlReader& one, const CXmlReader& other) {
    Require(one.GetAnalysisName() == other.GetAnalysisName(), "the same name");
    Require(std::ranges::equal(one.GetResults(), other.GetResults(), {}, &ReadResult::GetText,
                               &ReadResult::GetText),
            "the same problems");
}

void CompareSets(const CGraphDataSet& one, const CGraphDataSet& other) {
    Require(one.GetName() == other.GetName() && one.GetUnit() == other.GetUnit() &&
                one.GetDisplayType() == other.GetDisplayType(),
            "the same signals");
    Require(one.GetStore() == nullptr || one.GetColor() == other.GetColor(), "the same colours");
    Require(one.GetCount() == other.GetCount(), "as many samples");
    Require(AreSame(one.GetSamples(), other.GetSamples()), "the same samples");
}

void CompareModels(const CGraphData& one, const CGraphData& other) {
    Require(one.GetSets().size() == other.GetSets().size(), "as many signals");
    for (size_t i = 0; i < one.GetSets().size(); ++i)
        CompareSets(*one.GetSets()[i], *other.GetSets()[i]);
    Require(one.GetGroups().size() == other.GetGroups().size(), "as many groups");
    for (size_t i = 0; i < one.GetGroups().size(); ++i) {
        const CGraphDataGroup& group = *one.GetGroups()[i];
        const CGraphDataGroup& same = *other.GetGroups()[i];
        Require(group.m_strName == same.m_strName && group.m_bExpanded == same.m_bExpanded &&
                    std::ranges::equal(group.m_Sets, same.m_Sets, {}, &CGraphDataSet::GetName,
                                       &CGraphDataSet::GetName),
                "the same groups");
    }
}

void Run(std::string_view input) {
    constexpr size_t kCommentEnd = 3;
    Settings settings(input, kCommentEnd);
    const auto document = CutAroundRows(input);
    if (!document)
        return;
    const auto accessLevel = static_cast<int>(settings.Below(4));
    std::string text(document->before);
    text += LongRows(document->rows, settings);
    text += document->behind;
    const QString path = ScratchFolder() + QStringLiteral("input.xml");
    WriteFile(path, text);

    Reading usual;
    Read(usual, path, accessLevel);
    Reading checkedFirst;
    ReadCheckedFirst(checkedFirst, path, accessLevel);
    CompareResults(usual.reader, checkedFirst.reader);
    CompareModels(usual.data, checkedFirst.data);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Run(TextOf(data, size));
    return 0;
}
