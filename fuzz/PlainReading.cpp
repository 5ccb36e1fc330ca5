#include "PlainReading.h"

#include "PlainNumbers.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"
#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"
#include "xmldom/XmlDomNode.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace Tracelyn {

namespace {

void Require(bool holds, const std::string& promise) {
    if (!holds)
        throw std::runtime_error(promise);
}

// A column of the rows as its TypedData element describes it.
struct Column {
    QString name;
    QString type;
    int code;
};

std::vector<CXmlDomElement> ElementsOf(const CXmlDomElement& parent) {
    std::vector<CXmlDomElement> elements;
    CXmlDomNodeIterator child;
    for (parent.GetChildNodes(child); child.HasCurrent(); child.Next()) {
        if (child.GetNodeType() == kXmlElementType)
            child.GetElement(elements.emplace_back());
    }
    return elements;
}

CXmlDomElement Child(const CXmlDomElement& parent, const char* name) {
    CXmlDomElement child;
    Require(parent.GetChildByName(name, child), "a document read without a problem has every element");
    return child;
}

std::vector<Column> ColumnsOf(const CXmlDomElement& root) {
    std::vector<Column> columns;
    for (const CXmlDomElement& element :
         ElementsOf(Child(Child(root, "DataDefinition"), "VariablesDefinitions")))
        columns.push_back(
            {element.GetAttribute("Name"), element.GetAttribute("Type"), element.GetAttributeInt("Code")});
    return columns;
}

using Row = std::vector<std::string>; // its fields

std::vector<Row> RowsOf(const CXmlDomElement& root) {
    constexpr size_t kLongestField = 4096;
    std::string text = Child(root, "Data").GetText().toStdString();
    while (text.ends_with('\n'))
        text.pop_back();
    std::vector<Row> rows(1, Row(1));
    for (const char c : text) {
        if (c == '\n')
            rows.emplace_back(1);
        else if (c == ',')
            rows.back().emplace_back();
        else if (rows.back().back().size() < kLongestField)
            rows.back().back() += c;
    }
    return rows;
}

double Sample(const std::string& field, const QString& type) {
    if (type == u"Float")
        return PlainFloat(field);
    const long value =
        std::clamp<long>(std::strtol(field.c_str(), nullptr, 10), std::numeric_limits<int32_t>::min(),
                         std::numeric_limits<int32_t>::max());
    if (type == u"Short")
        return static_cast<int16_t>(value);
    if (type == u"UShort")
        return static_cast<uint16_t>(value);
    if (type == u"Long")
        return static_cast<int32_t>(value);
    if (type == u"ULong")
        return static_cast<uint32_t>(value);
    return static_cast<uint8_t>(value); // the byte types and Binary
}

void CompareSet(const CGraphDataSet& set, size_t column, const QString& type, const std::vector<Row>& rows) {
    Require(set.GetCount() == static_cast<int>(rows.size()), "a sample for every row");
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::string& field = rows[i][column % rows[i].size()]; // beyond the last the row starts over
        const double expected = Sample(field, type);
        const double value = set.GetValue(static_cast<int>(i), kNoReference);
        const bool isSame = std::bit_cast<uint64_t>(value) == std::bit_cast<uint64_t>(expected);
        if (!isSame && !(std::isnan(value) && std::isnan(expected)))
            Require(false, "a sample as its field says: column " + std::to_string(column) + ", row " +
                               std::to_string(i) + " is " + std::to_string(value) + " for " + field);
    }
}

void Compare(const QString& path, int accessLevel, const CGraphData& data) {
    CXmlDomDocument document;
    QString error;
    CXmlDomElement root;
    Require(document.Load(path, error) && document.GetRootElement(root), "a document loads again");
    const std::vector<Column> columns = ColumnsOf(root);
    const std::vector<Row> rows = RowsOf(root);

    size_t groupAt = 1; // behind the axis
    for (const CXmlDomElement& groupElement : ElementsOf(Child(root, "Groups"))) {
        if (groupElement.GetNodeName() != u"Group")
            continue;
        const CGraphDataGroup& group = *data.GetGroups().at(groupAt++);
        size_t setAt = 0;
        for (const CXmlDomElement& line : ElementsOf(groupElement)) {
            if (line.GetNodeName() == u"RefLine") {
                ++setAt;
                continue;
            }
            const auto column = std::ranges::find(columns, line.GetAttribute("DataName"), &Column::name);
            Require(column != columns.end(), "a line names a variable");
            if (column->code <= accessLevel)
                CompareSet(*group.m_Sets.at(setAt++), static_cast<size_t>(column - columns.begin()),
                           column->type, rows);
        }
        Require(setAt == group.m_Sets.size(), "a group has a set for every line");
    }
    Require(groupAt == data.GetGroups().size(), "every group is in the model");
}

} // namespace

std::string DifferenceFromPlainReading(const QString& path, int accessLevel, const CGraphData& data) {
    try {
        Compare(path, accessLevel, data);
        return {};
    } catch (const std::exception& difference) {
        return difference.what();
    }
}

} // namespace Tracelyn
