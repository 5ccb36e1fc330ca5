// A graph with data made by hand, and a window that paints what was invalidated, for the drawing tests.
#pragma once

#include "model/GraphDataVariants.h"
#include "render/Graph.h"

#include <QImage>
#include <QPainter>
#include <QRegion>

#include <algorithm>
#include <functional>
#include <memory>
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

// Owns the sample stores of the graph's sets.
class GraphWithData {
public:
    CGraphDataGroup& AddGroup(const QString& name, DisplayType type = DisplayType::Both) {
        graph.GetData().AddGroup(std::make_unique<CGraphDataGroup>(name));
        graph.GetData().GetGroups().back()->m_nDisplayType = type;
        return *graph.GetData().GetGroups().back();
    }

    CGraphDataSet& AddSignal(CGraphDataGroup& group, int count, const std::function<double(int)>& value,
                             ColorRef color = 0x00FF00, const QString& name = QStringLiteral("s")) {
        auto source = std::make_shared<CGraphDataTypedSource<float>>();
        for (int i = 0; i < count; ++i)
            source->Add(static_cast<float>(value(i)));
        auto& set = graph.GetData().Make<CGraphDataTypedSet<float>>(name, source.get());
        m_Stores.push_back(source);
        set.SetColor(color);
        group.AddSet(&set);
        return set;
    }

    template <class T>
    CGraphDataSet& AddTyped(CGraphDataGroup& group, std::span<const T> samples) {
        auto source = std::make_shared<CGraphDataTypedSource<T>>();
        std::ranges::copy(samples, source->Append(static_cast<int>(samples.size())).begin());
        auto& set = graph.GetData().Make<CGraphDataTypedSet<T>>(QStringLiteral("t"), source.get());
        m_Stores.push_back(source);
        group.AddSet(&set);
        return set;
    }

    CGraphDataSet& AddBit(CGraphDataGroup& group, int count, const std::function<bool(int)>& value,
                          ColorRef color = 0x00AAAA, const QString& name = QStringLiteral("b")) {
        auto source = std::make_shared<CGraphDataTypedSource<uint8_t>>();
        for (int i = 0; i < count; ++i)
            source->Add(value(i) ? 1 : 0);
        auto& set = graph.GetData().Make<CGraphDataBinarySet>(name, source.get());
        m_Stores.push_back(source);
        set.SetColor(color);
        group.AddSet(&set);
        return set;
    }

    void AddIndex(const QString& name = QStringLiteral("Time")) {
        CGraphDataGroup& group = AddGroup(name, DisplayType::Console);
        group.AddSet(&graph.GetData().Make<CGraphDataIndexSet>(name));
    }

    CGraph graph;

private:
    std::vector<std::shared_ptr<void>> m_Stores;
};

// The rows of a column whose pixel has the color.
inline std::vector<int> RowsOf(const RecordingWindow& window, int x, const QColor& color, int from, int to) {
    std::vector<int> rows;
    for (int y = from; y < to; ++y) {
        if (window.At(x, y) == color)
            rows.push_back(y);
    }
    return rows;
}

} // namespace Tracelyn
