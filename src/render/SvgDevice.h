// A painter's device that writes an SVG document: lines, areas and texts.
#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>
#include <QString>

#include <memory>

namespace Tracelyn {

class CSvgEngine;

// Knows what the graph draws with: paths that are stroked or filled, rectangles and texts, in plain colours
// and without a clip. Other things are left out. A unit of the document is a pixel.
class CSvgDevice : public QPaintDevice {
public:
    // Every text is set in a font of that family, or without it in another one without serifs.
    CSvgDevice(const QSize& size, const QString& title, const QString& family);
    ~CSvgDevice() override;

    QPaintEngine* paintEngine() const override;

    // The whole document in UTF-8, with what was painted so far.
    QByteArray GetDocument() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSize m_Size;
    QString m_strTitle;
    QString m_strFamily;
    std::unique_ptr<CSvgEngine> m_pEngine;
};

} // namespace Tracelyn
