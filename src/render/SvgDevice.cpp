#include "render/SvgDevice.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <limits>
#include <span>

namespace Tracelyn {

namespace {

constexpr double kDotsPerInch = 96;
constexpr double kMillimetresPerInch = 25.4;

QByteArray Number(double value) {
    return QByteArray::number(value, 'g', 10);
}

QByteArray Attribute(const char* name, const QByteArray& value) {
    return QByteArray(" ") + name + "=\"" + value + '"';
}

QByteArray Color(const QColor& color) {
    return color.name().toLatin1();
}

// XML knows no control characters but these three.
QByteArray Escaped(QString text) {
    std::ranges::replace_if(
        text, [](QChar c) { return c < u' ' && c != u'\t' && c != u'\n' && c != u'\r'; }, QChar(u' '));
    return text.toHtmlEscaped().toUtf8();
}

QByteArray PathData(const QPainterPath& path) {
    QByteArray data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        data += (element.isMoveTo() ? 'M' : 'L') + Number(element.x) + ' ' + Number(element.y);
    }
    return data;
}

} // namespace

class CSvgEngine : public QPaintEngine {
public:
    CSvgEngine() : QPaintEngine(AllFeatures) {}

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    Type type() const override { return SVG; }
    // Whatever is drawn asks the painter for its state.
    void updateState(const QPaintEngineState& /*state*/) override {}

    void drawPath(const QPainterPath& path) override {
        m_Body += "<path" + Style() + Attribute("d", PathData(path)) + "/>\n";
    }

    void drawRects(const QRectF* rects, int count) override {
        for (const QRectF& rect : std::span(rects, static_cast<size_t>(count)))
            m_Body += "<rect" + Attribute("x", Number(rect.x())) + Attribute("y", Number(rect.y())) +
                      Attribute("width", Number(rect.width())) + Attribute("height", Number(rect.height())) +
                      Style() + "/>\n";
    }

    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        m_Body += "<text" + Attribute("x", Number(at.x())) + Attribute("y", Number(at.y())) +
                  Attribute("font-size", Number(item.font().pixelSize())) +
                  Attribute("fill", Color(painter()->pen().color())) + '>' + Escaped(item.text()) +
                  "</text>\n";
    }

    void drawPixmap(const QRectF& /*area*/, const QPixmap& /*pixmap*/, const QRectF& /*source*/) override {}

    const QByteArray& GetBody() const { return m_Body; }

private:
    // Of a shape: its line, or what fills it.
    QByteArray Style() const {
        const QPen& pen = painter()->pen();
        const QBrush& brush = painter()->brush();
        QByteArray style = Attribute("fill", brush.style() == Qt::NoBrush ? "none" : Color(brush.color()));
        if (pen.style() != Qt::NoPen)
            style += Attribute("stroke", Color(pen.color()));
        return style;
    }

    QByteArray m_Body;
};

CSvgDevice::CSvgDevice(const QSize& size, const QString& title, const QString& family)
    : m_Size(size), m_strTitle(title), m_strFamily(family), m_pEngine(std::make_unique<CSvgEngine>()) {}

CSvgDevice::~CSvgDevice() = default;

QPaintEngine* CSvgDevice::paintEngine() const {
    return m_pEngine.get();
}

QByteArray CSvgDevice::GetDocument() const {
    const QByteArray width = QByteArray::number(m_Size.width());
    const QByteArray height = QByteArray::number(m_Size.height());
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "version=\"1.1\"" +
           Attribute("width", width) + Attribute("height", height) +
           Attribute("viewBox", "0 0 " + width + ' ' + height) + ">\n<title>" + Escaped(m_strTitle) +
           "</title>\n<desc>Tracelyn</desc>\n<g xml:space=\"preserve\" stroke-width=\"1\"" +
           Attribute("font-family", Escaped(m_strFamily) + ", sans-serif") + ">\n" + m_pEngine->GetBody() +
           "</g>\n</svg>\n";
}

int CSvgDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
    case PdmWidth:
        return m_Size.width();
    case PdmHeight:
        return m_Size.height();
    case PdmWidthMM:
        return qRound(m_Size.width() * kMillimetresPerInch / kDotsPerInch);
    case PdmHeightMM:
        return qRound(m_Size.height() * kMillimetresPerInch / kDotsPerInch);
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return static_cast<int>(kDotsPerInch);
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDepth:
        return 32;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return qRound(devicePixelRatioFScale());
    }
    return 0;
}

} // namespace Tracelyn
