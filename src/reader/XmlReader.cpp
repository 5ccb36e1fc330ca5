#include "reader/XmlReader.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"
#include "reader/XmlVariable.h"
#include "reader/rows/DataBlock.h"
#include "reader/rows/RowsApart.h"
#include "reader/rows/SampleText.h"
#include "support/FixedText.h"
#include "support/Limits.h"
#include "support/NumberText.h"
#include "support/ShownText.h"
#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"
#include "xmldom/XmlDomNode.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

namespace Tracelyn {

namespace limits = support::limits;

namespace {

constexpr ColorRef kIndexColor = 0xFF8080;
constexpr std::array<ColorRef, 8> kOrdinaryColors{0x00FF00, 0xFFCA82, 0x00FFFF, 0x1772F8,
                                                  0x0000FF, 0xFFFFFF, 0x8000FF, 0xFFFF00};
constexpr std::array<ColorRef, 7> kBinaryColors{0xAAAA00, 0x0000AA, 0x00AAAA, 0xAA00AA,
                                                0xAA8844, 0xAAAAAA, 0x00AA00};

constexpr int kDefaultDecimals = 3;
// Share of the reading after which the document is loaded and its sample rows are found; they are found soon
// when nobody looks at them.
constexpr double LoadedShare(TextCheck check) {
    return check == TextCheck::Now ? 0.2 : 0.02;
}

void ApplyUnit(CGraphDataSet& set, const Unit& unit) {
    set.SetProperties(set.GetName(), unit.name, unit.offset, unit.factor, unit.precision);
}

DisplayType ReadDisplayType(const CXmlDomElement& element, bool graphDefault, bool consoleDefault) {
    const bool graph = element.GetAttributeBool("DisplayGraph", graphDefault);
    const bool console = element.GetAttributeBool("DisplayConsole", consoleDefault);
    if (graph)
        return console ? DisplayType::Both : DisplayType::Graph;
    return console ? DisplayType::Console : DisplayType::None;
}

} // namespace

ColorRef CAutomaticColors::NextOrdinary() {
    return kOrdinaryColors[m_nOrdinary++ % kOrdinaryColors.size()];
}

ColorRef CAutomaticColors::NextBinary() {
    return kBinaryColors[m_nBinary++ % kBinaryColors.size()];
}

template <class Visitor>
bool CXmlReader::ForEachElement(const CXmlDomElement& parent, Visitor visit) {
    CXmlDomNodeIterator child;
    for (parent.GetChildNodes(child); child.HasCurrent(); child.Next()) {
        if (child.GetNodeType() != kXmlElementType)
            continue;
        CXmlDomElement element;
        child.GetElement(element);
        if (!m_Asked(0))
            return MayGoOn();
        if (!visit(element, element.GetNodeName()))
            return false;
    }
    return true;
}

CXmlReader::CXmlReader() : CXmlReader(CTypedDataRegistry::Instance()) {}

CXmlReader::CXmlReader(CTypedDataRegistry& registry)
    : m_Registry(registry), m_Asked([this](double done) {
          m_fDone = std::max(m_fDone, done);
          m_Read.isStopped = m_Read.isStopped || !support::Report(GetProgress(), m_fDone);
          return !m_Read.isStopped;
      }) {
    m_Registry.Clear();
}

void CXmlReader::ReadAnalysis(CGraphData& data, const QString& path) {
    const size_t groups = data.GetGroups().size();
    const size_t sets = data.GetSets().size();
    // What an earlier call has read cannot be told from what would be read in vain.
    const bool isFirst = std::exchange(m_bFirst, false);
    try {
        if (!isFirst || !ReadDocument(data, path, TextCheck::Later)) {
            if (isFirst) {
                data.KeepFirst(groups, sets);
                m_Registry.Clear();
                m_Read = {};
            }
            ReadDocument(data, path, TextCheck::Now);
        }
    } catch (...) {
        // Memory may have run out: the literal takes none.
        m_Read.problems.Add(ResultCode::UnknownError, QStringLiteral("Unknown exception"));
    }
    m_Read.problems.Finish();
}

bool CXmlReader::ReadDocument(CGraphData& data, const QString& path, TextCheck check) {
    m_Read.colors.Restart();
    CXmlDomDocument document;
    std::unique_ptr<CSampleText> rows; // null when they are in the document
    QString error;
    const auto loading = support::StepOf(m_Asked, 0, LoadedShare(check));
    if (!LoadWithRowsApart(path, "Data", document, rows, error, loading, check)) {
        // Not cut: the reason stands behind the path, which may be long.
        if (MayGoOn())
            m_Read.problems.AddAlways(ResultCode::XmlParseError, error);
        return true;
    }
    const bool isChecked = rows == nullptr || rows->IsChecked();
    CXmlDomElement block;
    if (!ReadUpToRows(data, document, block))
        return isChecked || m_Read.isStopped;
    if (rows == nullptr)
        rows = SampleTextInMemory(block.GetTextUtf8());
    const auto rest = support::StepOf(m_Asked, LoadedShare(check), 1);
    std::optional<QString> problem;
    if (isChecked)
        problem = ReadDataBlock(*rows, m_Read.variables, rest);
    else if (!ReadUncheckedBlock(*rows, m_Read.variables, rest, problem))
        return false;
    if (problem)
        m_Read.problems.AddAlways(ResultCode::UnknownError, *problem);
    return true;
}

bool CXmlReader::ReadUpToRows(CGraphData& data, const CXmlDomDocument& document, CXmlDomElement& block) {
    CXmlDomElement root;
    const QString rootName = document.GetRootElement(root) ? root.GetNodeName() : QString();
    if (rootName != QLatin1String("Analysis"))
        return Fail(ResultCode::InvalidRootName, rootName);
    m_Read.name = ReadText(root, "Name");

    CXmlDomElement definition;
    const bool isDefined = FindRequired(root, "DataDefinition", definition);
    if (!ReadDataDefinition(data, isDefined ? &definition : nullptr))
        return false;
    CXmlDomElement groups;
    return FindRequired(root, "Groups", groups) && ReadGroups(data, groups) &&
           FindRequired(root, "Data", block);
}

bool CXmlReader::ReadDataDefinition(CGraphData& data, const CXmlDomElement* definition) {
    if (definition == nullptr)
        return Fail(ResultCode::MissingNode, QStringLiteral("IndexSet"));
    CXmlDomElement variables;
    if (!ReadIndexSet(data, *definition) || !FindRequired(*definition, "VariablesDefinitions", variables))
        return false;
    return ForEachElement(variables, [&](const CXmlDomElement& child, const QString& name) {
        if (name == QLatin1String("TypedData"))
            return m_Read.problems.IsFull(m_Read.variableCap, m_Read.variables.size()) ||
                   ReadVariable(data, child);
        Fail(ResultCode::InvalidNodeName, name);
        return true;
    });
}

bool CXmlReader::ReadIndexSet(CGraphData& data, const CXmlDomElement& definition) {
    CXmlDomElement index;
    if (!FindRequired(definition, "IndexSet", index))
        return false;
    const QString name = ReadText(index, "Name");
    if (name.isEmpty())
        return Fail(ResultCode::MissingAttribute, QStringLiteral("IndexSet Name"));
    CXmlDomElement unit;
    if (!FindRequired(index, "Unit", unit))
        return false;

    auto& set = data.Make<CGraphDataIndexSet>(name);
    ApplyUnit(set, ReadUnit(unit));
    auto group = std::make_unique<CGraphDataGroup>(name);
    group->m_nDisplayType = DisplayType::Console;
    group->AddSet(&set);
    data.AddGroup(std::move(group));
    set.SetColor(kIndexColor);
    return true;
}

bool CXmlReader::ReadVariable(CGraphData& data, const CXmlDomElement& element) {
    const QString name = ReadText(element, "Name");
    if (name.isEmpty())
        return Fail(ResultCode::EmptyAttribute, QStringLiteral("Name"));
    const QString type = ReadText(element, "Type");
    if (type.isEmpty())
        return Fail(ResultCode::EmptyAttribute, QStringLiteral("Type"));
    TypedDataBase* const variable = CreateVariable(type, data, m_Registry);
    if (variable == nullptr)
        return Fail(ResultCode::InvalidAttributeValue, QStringLiteral("Type = ") + type);

    m_Read.variables.push_back(variable);
    m_Read.variablesByName.try_emplace(name, variable);
    variable->SetName(name);
    variable->SetDescription(ReadText(element, "Description"));
    variable->SetCode(element.GetAttributeInt("Code", 0));
    variable->SetColor(ReadText(element, "Color"));
    return ForEachElement(element, [&](const CXmlDomElement& child, const QString& childName) {
        if (childName == QLatin1String("Unit"))
            variable->AddUnit(ReadUnit(child));
        else
            Fail(ResultCode::InvalidNodeName, childName);
        return true;
    });
}

bool CXmlReader::ReadGroups(CGraphData& data, const CXmlDomElement& groups) {
    return ForEachElement(groups, [&](const CXmlDomElement& child, const QString& name) {
        return name != QLatin1String("Group") ||
               m_Read.problems.IsFull(m_Read.groupCap, data.GetGroups().size()) || ReadGroup(data, child);
    });
}

bool CXmlReader::ReadGroup(CGraphData& data, const CXmlDomElement& element) {
    const QString name = ReadText(element, "Name");
    if (name.isEmpty())
        return Fail(ResultCode::EmptyGroupName, QStringLiteral("Name"));
    m_Read.colors.Restart();

    // Added before it is read: when a later line fails, the group stays with the lines before.
    data.AddGroup(std::make_unique<CGraphDataGroup>(name));
    CGraphDataGroup& group = *data.GetGroups().back();
    group.m_nSizeRatio = element.GetAttributeInt("SizeRatio", 1);
    group.m_bExpanded = element.GetAttributeBool("Expanded", false);
    group.m_bSeparateSets = element.GetAttributeBool("SeparateSets", false);
    group.m_bInverted = element.GetAttribute("Orientation") == QLatin1String("Inverted");
    return ForEachElement(element, [&](const CXmlDomElement& child, const QString& childName) {
        if (m_Read.problems.IsFull(m_Read.signalCap, data.GetSets().size()))
            return true;
        if (childName == QLatin1String("Line"))
            return ReadLine(group, child);
        if (childName == QLatin1String("RefLine"))
            return ReadRefLine(data, group, child);
        return Fail(ResultCode::InvalidNodeName, childName);
    });
}

bool CXmlReader::ReadLine(CGraphDataGroup& group, const CXmlDomElement& element) {
    const QString dataName = ReadText(element, "DataName");
    if (dataName.isEmpty())
        return Fail(ResultCode::EmptyAttribute, QStringLiteral("DataName"));
    const auto found = m_Read.variablesByName.find(dataName);
    // It may be one of the variables beyond the cap, which must not end the reading.
    if (found == m_Read.variablesByName.end())
        return m_Read.variableCap.isReported || Fail(ResultCode::DataNotFound, dataName);
    TypedDataBase& variable = *found->second;
    if (GetAccessLevel() < variable.GetCode())
        return true;

    CGraphDataSet& set = variable.CreateSet();
    SetColorOf(set, variable);
    set.SetIgnoredForVerticalAutoScaling(element.GetAttributeBool("IgnoreForVerticalAutoScaling", false));
    set.SetDisplayType(ReadDisplayType(element, true, true));
    // A line's UnitName chooses nothing: the first unit is the one shown.
    if (set.IsDisplayedInConsole())
        ApplyUnit(set, variable.GetUnits().empty() ? Unit{} : variable.GetUnits().front());
    group.AddSet(&set);
    return true;
}

bool CXmlReader::ReadRefLine(CGraphData& data, CGraphDataGroup& group, const CXmlDomElement& element) {
    const QString name = ReadText(element, "Name");
    if (name.isEmpty())
        return Fail(ResultCode::MissingAttribute, QStringLiteral("Name"));
    auto& set = data.Make<CGraphDataOwningFixedSet>(name);
    bool found = false;
    set.SetValue(element.GetAttributeFloat("Value", 0.0F, &found));
    if (!found)
        return Fail(ResultCode::MissingAttribute, QStringLiteral("Value"));
    set.SetIgnoredForVerticalAutoScaling(element.GetAttributeBool("IgnoreForVerticalAutoScaling", true));
    set.SetDisplayType(ReadDisplayType(element, true, false));
    group.AddSet(&set);
    return true;
}

Unit CXmlReader::ReadUnit(const CXmlDomElement& element) {
    return {ReadText(element, "Name"), element.GetAttributeFloat("UnitOffset", 0.0F),
            element.GetAttributeFloat("UnitFactor", 1.0F),
            element.GetAttributeInt("Precision", kDefaultDecimals)};
}

QString CXmlReader::ReadText(const CXmlDomElement& element, const char* attribute) {
    const QString text = element.GetAttribute(attribute);
    if (text.size() > limits::kMaxNameLength) {
        Fail(ResultCode::UnknownError, QStringLiteral("A %1 of %2 characters is cut off")
                                           .arg(QLatin1String(attribute))
                                           .arg(text.size()));
    }
    return support::CutText(text, limits::kMaxNameLength);
}

bool CXmlReader::Fail(ResultCode code, const QString& detail) {
    m_Read.problems.Add(code, detail);
    return false;
}

bool CXmlReader::MayGoOn() {
    if (m_Read.isStopped)
        m_Read.problems.AddAlways(ResultCode::UnknownError, kStoppedBeforeRows);
    return !m_Read.isStopped;
}

bool CXmlReader::FindRequired(const CXmlDomElement& parent, const char* name, CXmlDomElement& child) {
    return parent.GetChildByName(name, child) || Fail(ResultCode::MissingNode, QString::fromLatin1(name));
}

void CXmlReader::SetColorOf(CGraphDataSet& set, const TypedDataBase& variable) {
    QString color = variable.GetColor();
    if (color.isEmpty())
        set.SetColor(set.IsBinary() ? m_Read.colors.NextBinary() : m_Read.colors.NextOrdinary());
    else
        set.SetColor(
            static_cast<ColorRef>(support::ParseHexColor(color.remove(QLatin1Char('#')).toStdString())));
}

} // namespace Tracelyn
