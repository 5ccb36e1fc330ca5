// A window that records what was invalidated and painted, and a graph with data made by hand.
#pragma once

#include "MemoryRecording.h"
#include "StripWindow.h"

namespace Tracelyn {

class RecordingWindow : public StripWindow {
public:
    using StripWindow::StripWindow;
    void Invalidate(const PixelRect& area, Contents contents) override {
        StripWindow::Invalidate(area, contents);
        areas.push_back(area);
    }
    void Invalidate() override {
        StripWindow::Invalidate();
        ++wholeInvalidations;
    }
    void UpdateNow() override {
        painted.push_back(GetInvalid().GetRegion());
        PaintInvalid();
    }
    void SetScrollBar(const ScrollBarState& state) override { scrollBar = state; }

    QColor At(int x, int y) const { return GetImage().pixelColor(x, y); }
    // The rows of a column whose pixel has the color.
    std::vector<int> Rows(int x, const QColor& color, int from = 0, int to = INT32_MAX) const {
        std::vector<int> rows;
        for (int y = from; y < std::min(to, GetImage().height()); ++y) {
            if (At(x, y) == color)
                rows.push_back(y);
        }
        return rows;
    }
    // The pixels of the color inside a rectangle.
    int Count(const QRect& rect, const QColor& color) const {
        int count = 0;
        for (int x = rect.left(); x <= rect.right(); ++x)
            count += static_cast<int>(Rows(x, color, rect.top(), rect.bottom() + 1).size());
        return count;
    }
    int Count(const QColor& color) const { return Count(GetImage().rect(), color); }

    std::vector<PixelRect> areas;
    std::vector<QRegion> painted;
    int wholeInvalidations = 0;
    ScrollBarState scrollBar;
};

// A recording with short words for its usual signals.
struct GraphWithData : MemoryRecording {
    using MemoryRecording::AddBit;
    using MemoryRecording::AddSignal;

    // Green unless told otherwise.
    template <class Value>
    CGraphDataSet& AddSignal(CGraphDataGroup& group, int count, Value value) {
        return Green(AddSignal(group, QStringLiteral("s"), count, value));
    }
    template <class Value>
    CGraphDataSet& AddBit(CGraphDataGroup& group, int count, Value value) {
        return Green(AddBit(group, QStringLiteral("b"), count, value));
    }
    void AddIndex() {
        CGraphDataGroup& group = AddGroup(QStringLiteral("Time"), DisplayType::Console);
        group.AddSet(&graph.GetData().Make<CGraphDataIndexSet>(QStringLiteral("Time")));
    }
    static CGraphDataSet& Green(CGraphDataSet& set) {
        set.SetColor(0x00FF00);
        return set;
    }
};

} // namespace Tracelyn
