#include "render/Console.h"

#include "model/GraphData.h"
#include "render/Canvas.h"
#include "support/FixedText.h"

#include <algorithm>
#include <array>

namespace Tracelyn {

namespace {

using Metrics = LayoutMetrics;

// Walks the sets shown in a console box: visit(set, column, row), two on/off signals to a row. Returns the
// rows.
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

float World(int pixel) {
    return static_cast<float>(pixel);
}

// The value as the console prints it: a blank, then fixed-point digits.
QString ValueText(double value, int precision) {
    std::array<char, support::FixedTextCapacity> buffer;
    const std::string_view digits = support::FormatFixed(buffer, static_cast<float>(value), precision);
    return QLatin1Char(' ') + QString::fromLatin1(digits.data(), static_cast<qsizetype>(digits.size()));
}

} // namespace

CConsole::CConsole(CGraphDrawingContext& context, bool onLeft)
    : m_Context(context),
      m_nLeft(onLeft ? context.GetClient().left + Metrics::kConsoleMargin
                     : context.GetClient().right - context.m_Console.width - Metrics::kConsoleMargin) {
    int y = context.GetClient().top + Metrics::kConsoleMargin;
    for (const auto& group : context.GetData().GetGroups()) {
        if (!group->IsDisplayedInConsole())
            continue;
        if (y >= context.GetClient().bottom)
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
        const int top = box.end - (box.group->m_nConsoleLines + 1) * Metrics::kConsoleLineHeight;
        region += QRect(m_nLeft, top, m_Context.m_Console.width, box.end + 2 - top);
    }
    return region;
}

void CConsole::Draw(CCanvas& canvas, const CursorPair& cursors) {
    for (const Box& box : m_Boxes)
        DrawBox(canvas, box, cursors);
}

void CConsole::DrawBox(CCanvas& canvas, const Box& box, const CursorPair& cursors) {
    CPixelPainter& painter = m_Context.Painter();
    painter.SetPen(m_Context.Colors().consoleFrame);
    painter.SetBrush(m_Context.Colors().consoleFill);
    const int right = m_nLeft + m_Context.m_Console.width;
    if (box.bodyTop != box.top) {
        canvas.Rectangle(World(m_nLeft), World(box.top), World(right), World(box.bodyTop));
        painter.SetTextColor(m_Context.Colors().consoleGroupName);
        TextAt(canvas, m_nLeft + Metrics::kConsoleIndent, box.top, box.group->m_strName);
    }
    const int bodyHeight = Metrics::kConsoleLineHeight * box.group->m_nConsoleLines + 2;
    canvas.Rectangle(World(m_nLeft), World(box.bodyTop), World(right), World(box.bodyTop + bodyHeight));
    DrawRows(canvas, box, cursors);
}

void CConsole::DrawRows(CCanvas& canvas, const Box& box, const CursorPair& cursors) {
    ForEachConsoleCell(*box.group, [&](const CGraphDataSet& set, int column, int row) {
        const int y = box.bodyTop + row * Metrics::kConsoleLineHeight;
        if (y >= m_Context.GetClient().bottom)
            return;
        if (set.IsBinary())
            DrawBitCell(canvas, set, column, y + 1, cursors.cursor);
        else
            DrawValueRow(canvas, set, y, cursors);
    });
}

void CConsole::DrawValueRow(CCanvas& canvas, const CGraphDataSet& set, int y, const CursorPair& cursors) {
    CPixelPainter& painter = m_Context.Painter();
    const ConsoleMetrics& console = m_Context.m_Console;
    const int nameX = m_nLeft + Metrics::kConsoleIndent;
    const int valueX = nameX + console.widestName;
    const int unitX = valueX + console.numberWidth;
    const QString value =
        ValueText(set.GetScaledValue(cursors.cursor, cursors.fixedCursor), set.GetPrecision());

    const int textX = unitX - 4 - painter.TextWidth(value);

    painter.SetTextColor(ToQColor(set.GetColor()));
    TextAt(canvas, nameX, y, set.GetName());
    TextAt(canvas, textX, y, value);
    TextAt(canvas, unitX, y - 1, set.GetUnit());
    // A value too wide for its column belongs to its cell all the same, so that no digit of it stays behind.
    canvas.AddScreenRect(kValueRect, World(std::min(valueX, textX)), World(y + 1), World(unitX),
                         World(y + Metrics::kConsoleLineHeight));
}

void CConsole::DrawBitCell(CCanvas& canvas, const CGraphDataSet& set, int column, int y, int cursor) {
    CPixelPainter& painter = m_Context.Painter();
    const int columnWidth =
        (m_Context.m_Console.width - 2 * Metrics::kConsoleIndent) / Metrics::kBinariesPerRow;
    const int x = columnWidth * column + Metrics::kConsoleIndent + m_nLeft + 2;
    const QColor color = ToQColor(set.GetColor());
    const bool on = set.GetValue(cursor, kNoReference) != 0.0;
    painter.SetTextColor(on ? m_Context.Colors().background : color);
    painter.SetTextBackground(on ? color : QColor());
    const PixelRect cell{x - 1, y, x + painter.TextWidth(set.GetName()) + 2, y + CPixelPainter::kTextHeight};
    // A step repaints the cell alone: accents that reach out of it would keep the colour of the state before.
    const QRegion clip = painter.GetClip();
    painter.SetClip(clip & cell.ToQRect());
    TextAt(canvas, x, y, set.GetName());
    painter.SetClip(clip);
    painter.SetTextBackground(QColor());
    canvas.AddScreenRect(kValueRect, World(cell.left), World(cell.top), World(cell.right),
                         World(cell.bottom));
}

void CConsole::TextAt(CCanvas& canvas, int x, int y, const QString& text) {
    canvas.TextOut(World(x), World(y), text);
}

} // namespace Tracelyn
