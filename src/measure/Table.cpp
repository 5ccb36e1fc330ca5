#include "measure/Table.h"

#include "support/ShownText.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Tracelyn {

namespace {

constexpr char kCsvSeparator = ',';
constexpr const char* kCsvLineEnd = "\r\n";

template <class... Format>
QByteArray NumberText(double value, Format... format) {
    if (!std::isfinite(value))
        return {};
    std::array<char, 32> text;
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value, format...).ptr;
    return {text.data(), end - text.data()};
}

QByteArray TruthText(bool value) {
    return value ? "true" : "false";
}

// Makes text of a cell; a table differs from another in how it writes texts and numbers.
template <class Text, class Number>
QByteArray CellText(const Cell& cell, Text text, Number number) {
    if (const auto* const string = std::get_if<QString>(&cell))
        return text(*string);
    if (const auto* const value = std::get_if<double>(&cell))
        return number(*value);
    if (const auto* const count = std::get_if<int64_t>(&cell))
        return QByteArray::number(qlonglong{*count});
    const auto* const truth = std::get_if<bool>(&cell);
    return truth == nullptr ? QByteArray() : TruthText(*truth);
}

QByteArray JsonString(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

QByteArray JsonText(std::span<const char* const> columns, std::span<const TableLine> lines) {
    const auto number = [](double value) { return std::isfinite(value) ? NumberText(value) : "null"; };
    QByteArray text = "[";
    for (const TableLine& line : lines) {
        QByteArray object;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (!std::holds_alternative<NoFigure>(line[i]))
                object += (object.isEmpty() ? "\"" : ", \"") + QByteArray(columns[i]) +
                          "\": " + CellText(line[i], JsonString, number);
        }
        text += (text.size() == 1 ? "\n  {" : ",\n  {") + object + '}';
    }
    return text + "\n]\n";
}

QByteArray CsvField(const QString& text) {
    QByteArray field = text.toUtf8();
    const auto needsQuotes = [](char c) { return c == kCsvSeparator || c == '"' || c == '\r' || c == '\n'; };
    return std::ranges::none_of(field, needsQuotes) ? field : '"' + field.replace("\"", "\"\"") + '"';
}

QByteArray CsvText(std::span<const char* const> columns, std::span<const TableLine> lines) {
    QByteArray text;
    const auto append = [&text](size_t column, const QByteArray& field) {
        if (column > 0)
            text += kCsvSeparator;
        text += field;
    };
    for (size_t i = 0; i < columns.size(); ++i)
        append(i, columns[i]);
    text += kCsvLineEnd;
    for (const TableLine& line : lines) {
        for (size_t i = 0; i < columns.size(); ++i)
            append(i, CellText(line[i], CsvField, [](double value) { return NumberText(value); }));
        text += kCsvLineEnd;
    }
    return text;
}

// Of a length that a line can have, without what would break the line.
QByteArray ShownField(const QString& text) {
    QString shown = support::ShownText(text);
    std::ranges::replace_if(
        shown, [](QChar c) { return c.category() == QChar::Other_Control; }, QChar(u' '));
    return shown.toUtf8();
}

qsizetype Width(const QByteArray& field) {
    return QString::fromUtf8(field).size();
}

QByteArray AlignedText(std::span<const char* const> columns, std::span<const TableLine> lines) {
    constexpr int kDigits = 7; // of a sample's value
    const auto number = [](double value) {
        return NumberText(value + 0.0, std::chars_format::general, kDigits); // a zero has no sign
    };
    std::vector<std::vector<QByteArray>> fields{{columns.begin(), columns.end()}};
    for (const TableLine& line : lines) {
        auto& row = fields.emplace_back();
        for (const Cell& cell : line)
            row.push_back(CellText(cell, ShownField, number));
    }
    std::vector<qsizetype> widths(columns.size(), 0);
    for (const auto& row : fields) {
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], Width(row[i]));
    }
    QByteArray text;
    for (const auto& row : fields) {
        QByteArray line;
        for (size_t i = 0; i < row.size(); ++i) {
            const QByteArray room(widths[i] - Width(row[i]), ' ');
            const bool isText = !lines.empty() && std::holds_alternative<QString>(lines.front()[i]);
            line += (i == 0 ? "" : "  ") + (isText ? row[i] + room : room + row[i]);
        }
        while (line.endsWith(' '))
            line.chop(1);
        text += line + '\n';
    }
    return text;
}

} // namespace

QByteArray TableText(std::span<const char* const> columns, std::span<const TableLine> lines,
                     TableFormat format) {
    switch (format) {
    case TableFormat::Json:
        return JsonText(columns, lines);
    case TableFormat::Csv:
        return CsvText(columns, lines);
    case TableFormat::Table:
        break;
    }
    return AlignedText(columns, lines);
}

} // namespace Tracelyn
