#include "render/Console.h"

#include "model/GraphData.h"
#include "render/Canvas.h"
#include "support/FixedText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Tracelyn {

namespace {

using Metrics = LayoutMetrics;

// Free pixels between a value and its unit, and between the cells of two on/off signals.
constexpr int kValueGap = 4;
constexpr int kCellGap = 2;

// Calls visit(set, column, row) for every set shown in a console box and returns the number of rows. A row
// holds one signal or two on/off signals.
template <class Visitor>
int ForEachConsoleCell(const CGraphDataGroup& group, Visitor visit) {
    int row = 0;
    int column = 0;
    for (const CGraphDataSet* set : group.m_Sets) {
        if (!set->IsDisplayedInConsole())
            continue;
        if (!set->IsBinary() && column != 0) {
            column = 0;
            ++row;
        }
        visit(*set, column, row);
        if (!set->IsBinary() || ++column == Metrics::kBinariesPerRow) {
            column = 0;
            ++row;
        }
    }
    return column == 0 ? row : row + 1;
}

// The value as the console prints it: a blank, then fixed-point digits.
QString ValueText(const CGraphDataSet& set, const CursorPair& cursors) {
    const auto value = static_cast<float>(set.GetScaledValue(cursors.cursor, cursors.fixedCursor));
    std::array<char, support::kFixedTextCapacity> buffer;
    const std::string_view digits = support::FormatFixed(buffer, value, set.GetPrecision());
    return QLatin1Char(' ') + QString::fromLatin1(digits.data(), static_cast<qsizetype>(digits.size()));
}

// As a cell of a table.
QString CellText(const QString& text) {
    return text.simplified();
}

bool IsOn(const CGraphDataSet& set, const CursorPair& cursors) {
    return set.GetValue(cursors.cursor, kNoReference) != 0.0;
}

} // namespace

CConsole::CConsole(const CGraphData& data, const PixelRect& client, const ConsoleMetrics& metrics,
                   bool onLeft)
    : m_Client(client), m_Metrics(metrics),
      m_nLeft(onLeft ? client.left + Metrics::kConsoleMargin
                     : client.right - metrics.width - Metrics::kConsoleMargin) {
    if (metrics.height == 0)
        return;
    int y = client.top + Metrics::kConsoleMargin;
    for (const auto& group : data.GetGroups()) {
        if (!group->IsDisplayedInConsole())
            continue;
        if (y >= client.bottom)
            break;
        // The first box goes without a name row, though its line count includes one.
        const int bodyTop = m_Boxes.empty() ? y : y + Metrics::kConsoleLineHeight;
        const int rows = ForEachConsoleCell(*group, [](const CGraphDataSet&, int, int) {});
        const int end = bodyTop + rows * Metrics::kConsoleLineHeight;
        m_Boxes.push_back({group.get(), y, bodyTop, end});
        y = end + Metrics::kConsoleGroupGap;
    }
}

QRegion CConsole::GetRegion() const {
    QRegion region;
    for (const Box& box : m_Boxes) {
        // Signals and on/off signals in turn take more rows than their lines were counted.
        const int countedTop = box.end - (box.group->m_nConsoleLines + 1) * Metrics::kConsoleLineHeight;
        const int top = std::min(box.top, countedTop);
        region += PixelRect{m_nLeft, top, GetRight(), box.end + 2}.ToQRect();
    }
    return region;
}

template <class Visitor>
void CConsole::ForEachVisibleCell(const Box& box, Visitor visit) const {
    ForEachConsoleCell(*box.group, [&](const CGraphDataSet& set, int column, int row) {
        const int y = box.bodyTop + row * Metrics::kConsoleLineHeight;
        if (y < m_Client.bottom)
            visit(set, column, y);
    });
}

PixelRect CConsole::GetValueCell(int y, int valueWidth) const {
    const int textX = GetUnitX() - kValueGap - valueWidth;
    return {std::min(GetValueX(), textX), y + 1, GetUnitX(), y + Metrics::kConsoleLineHeight};
}

std::vector<PixelRect> CConsole::GetWideCells(CSmallFont& font, const CursorPair& cursors) const {
    std::vector<PixelRect> cells;
    const auto addWide = [&](const CGraphDataSet& set, int /*column*/, int y) {
        if (set.IsBinary())
            return;
        const PixelRect cell = GetValueCell(y, font.GetTextWidth(ValueText(set, cursors)));
        if (cell.left < GetValueX())
            cells.push_back(cell);
    };
    for (const Box& box : m_Boxes)
        ForEachVisibleCell(box, addWide);
    return cells;
}

void CConsole::Draw(CGraphDrawingContext& context, CCanvas& canvas, const CursorPair& cursors) const {
    const Pass pass{context, canvas, cursors};
    for (const Box& box : m_Boxes)
        DrawBox(pass, box);
}

void CConsole::DrawBox(const Pass& pass, const Box& box) const {
    CPixelPainter& painter = pass.context.GetPainter();
    const ColorScheme& colors = pass.context.GetColors();
    painter.SetPen(colors.consoleFrame);
    painter.SetBrush(colors.consoleFill);
    if (box.bodyTop != box.top) {
        painter.Rectangle({m_nLeft, box.top, GetRight(), box.bodyTop});
        painter.SetTextColor(colors.consoleGroupName);
        painter.Text(m_nLeft + Metrics::kConsoleIndent, box.top, box.group->m_strName);
    }
    const int bodyHeight = Metrics::kConsoleLineHeight * box.group->m_nConsoleLines + 2;
    painter.Rectangle({m_nLeft, box.bodyTop, GetRight(), box.bodyTop + bodyHeight});
    ForEachVisibleCell(box, [&](const CGraphDataSet& set, int column, int y) {
        if (set.IsBinary())
            DrawBitCell(pass, set, column, y + 1);
        else
            DrawValueRow(pass, set, y);
    });
}

void CConsole::DrawValueRow(const Pass& pass, const CGraphDataSet& set, int y) const {
    CPixelPainter& painter = pass.context.GetPainter();
    const QString value = ValueText(set, pass.cursors);
    const int width = painter.GetTextWidth(value);

    painter.SetTextColor(ToQColor(set.GetColor()));
    painter.Text(m_nLeft + Metrics::kConsoleIndent, y, set.GetName());
    painter.Text(GetUnitX() - kValueGap - width, y, value);
    painter.Text(GetUnitX(), y - 1, set.GetUnit());
    pass.canvas.AddScreenRect(kValueRect, GetValueCell(y, width));
}

void CConsole::DrawBitCell(const Pass& pass, const CGraphDataSet& set, int column, int y) const {
    CPixelPainter& painter = pass.context.GetPainter();
    const int columnWidth = (m_Metrics.width - 2 * Metrics::kConsoleIndent) / Metrics::kBinariesPerRow;
    const int x = columnWidth * column + Metrics::kConsoleIndent + m_nLeft + kCellGap;
    const PixelRect cell{x - 1, y, x + painter.GetTextWidth(set.GetName()) + kCellGap,
                         y + CPixelPainter::kTextHeight};
    const QColor color = ToQColor(set.GetColor());
    const bool on = IsOn(set, pass.cursors);
    painter.SetTextColor(on ? pass.context.GetColors().background : color);
    painter.SetTextBackground(on ? color : QColor());
    // A cursor step repaints the cell alone. Accents that reach out of it would keep the colour of the state
    // before.
    const QRegion clip = painter.GetClip();
    painter.SetClip(clip & cell.ToQRect());
    painter.Text(x, y, set.GetName());
    painter.SetClip(clip);
    painter.SetTextBackground(QColor());
    pass.canvas.AddScreenRect(kValueRect, cell);
}

QString ValueTable(const CGraphData& data, const CursorPair& cursors) {
    QString table;
    bool isFirst = true;
    const auto addLine = [&](const QStringList& cells) { table += cells.join(u'\t') + u'\n'; };
    for (const auto& group : data.GetGroups()) {
        if (!group->IsDisplayedInConsole())
            continue;
        if (!std::exchange(isFirst, false))
            addLine({CellText(group->m_strName)});
        ForEachConsoleCell(*group, [&](const CGraphDataSet& set, int /*column*/, int /*row*/) {
            const QString value =
                set.IsBinary() ? QString::number(IsOn(set, cursors) ? 1 : 0) : ValueText(set, cursors);
            addLine({CellText(set.GetName()), CellText(value), CellText(set.GetUnit())});
        });
    }
    return table;
}

} // namespace Tracelyn
