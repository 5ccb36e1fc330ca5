#include "PlainReading.h"

#include "FuzzInput.h"
#include "model/GraphData.h"
#include "model/GraphDataVariants.h"
#include "xmldom/XmlDomDocument.h"
#include "xmldom/XmlDomElement.h"
#include "xmldom/XmlDomNodeIterator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace Tracelyn {

namespace {

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
        if (child.GetNodeType() == XmlDomElementType)
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

std::vector<std::string> RowsOf(const CXmlDomElement& root) {
    std::string text = Child(root, "Data").GetText().toStdString();
    while (text.ends_with('\n'))
        text.pop_back();
    std::vector<std::string> rows(1);
    for (const char c : text) {
        if (c == '\n')
            rows.emplace_back();
        else
            rows.back() += c;
    }
    return rows;
}

// The field of a column: beyond the last field the row starts over.
std::string FieldOf(const std::string& row, size_t column) {
    const auto fields = static_cast<size_t>(std::ranges::count(row, ',')) + 1;
    size_t start = 0;
    for (size_t i = 0; i < column % fields; ++i)
        start = row.find(',', start) + 1;
    constexpr size_t kLongestField = 4096;
    return row.substr(start, std::min(row.find(',', start) - start, kLongestField));
}

double Sample(const std::string& field, const QString& type) {
    if (type == u"Float")
        return static_cast<float>(std::strtod(field.c_str(), nullptr));
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

void CompareSet(const CGraphDataSet& set, size_t column, const QString& type,
                const std::vector<std::string>& rows) {
    Require(set.GetCount() == static_cast<int>(rows.size()), "a sample for every row");
    for (size_t i = 0; i < rows.size(); ++i) {
        const double expected = Sample(FieldOf(rows[i], column), type);
        const double value = set.GetValue(static_cast<int>(i), kNoReference);
        Require(value == expected || (std::isnan(value) && std::isnan(expected)),
                "a sample as its field says");
    }
}

} // namespace

void CompareWithPlainReading(const QString& path, int accessLevel, const CGraphData& data) {
    CXmlDomDocument document;
    QString error;
    CXmlDomElement root;
    Require(document.Load(path, error) && document.GetRootElement(root), "a document loads again");
    const std::vector<Column> columns = ColumnsOf(root);
    const std::vector<std::string> rows = RowsOf(root);

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

} // namespace Tracelyn
