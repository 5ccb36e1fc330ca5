// A graph with data made by hand, and a window that paints what was invalidated, for the drawing tests.
#pragma once

#include "MemoryRecording.h"

#include <QImage>
#include <QPainter>
#include <QRegion>

#include <span>
#include <utility>
#include <vector>

namespace Tracelyn {

class RecordingWindow : public CGraphWindow {
public:
    RecordingWindow(CGraph& graph, QSize size, double scale = 1.0)
        : m_Graph(graph), m_Size(size), m_Image(size * scale, QImage::Format_RGB32) {
        m_Image.setDevicePixelRatio(scale);
        m_Image.fill(Qt::magenta);
    }

    PixelRect GetClientRect() const override { return {0, 0, m_Size.width(), m_Size.height()}; }
    void Invalidate(const PixelRect& area, Contents contents) override {
        invalid.Add(area.ToQRect() & QRect(QPoint(), m_Size), contents);
        areas.push_back(area);
    }
    void Invalidate() override {
        invalid = PaintArea(QRect(QPoint(), m_Size));
        ++wholeInvalidations;
    }
    void UpdateNow() override {
        painted.push_back(invalid.GetRegion());
        PaintInvalid();
    }
    void SetScrollBar(const ScrollBarState& state) override { scrollBar = state; }

    void Paint(const PaintArea& area) {
        invalid = {};
        if (area.IsEmpty())
            return;
        // What the frame draws outside the region must not reach the window.
        QImage frame = m_Image.copy();
        QPainter framePainter(&frame);
        m_Graph.Draw(*this, framePainter, area);
        framePainter.end();
        QPainter painter(&m_Image);
        painter.setClipRegion(area.GetRegion());
        painter.drawImage(QPoint(), frame);
    }
    void PaintAll() { Paint(PaintArea(QRect(QPoint(), m_Size))); }
    void PaintInvalid() { Paint(std::exchange(invalid, {})); }
    // What is not painted again stays wrong.
    void Spoil() { m_Image.fill(Qt::magenta); }

    QColor At(int x, int y) const { return m_Image.pixelColor(x, y); }
    // The rows of a column whose pixel has the color.
    std::vector<int> Rows(int x, const QColor& color, int from = 0, int to = INT32_MAX) const {
        std::vector<int> rows;
        for (int y = from; y < std::min(to, m_Image.height()); ++y) {
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
    int Count(const QColor& color) const { return Count(m_Image.rect(), color); }
    const QImage& GetImage() const { return m_Image; }

    PaintArea invalid;
    std::vector<PixelRect> areas;
    std::vector<QRegion> painted;
    int wholeInvalidations = 0;
    ScrollBarState scrollBar;

private:
    CGraph& m_Graph;
    QSize m_Size;
    QImage m_Image;
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
    template <class T>
    CGraphDataSet& AddTyped(CGraphDataGroup& group, std::span<const T> samples) {
        return AddSignal<T>(group, QStringLiteral("t"), static_cast<int>(samples.size()),
                            [&](int i) { return samples[static_cast<size_t>(i)]; });
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
