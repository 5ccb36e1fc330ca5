#include "render/Picture.h"

#include "render/Graph.h"
#include "render/GraphWindow.h"
#include "render/SmallFont.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace Tracelyn {

namespace {

constexpr int kPointsPerInch = 72;

QSize SizeOf(const COffscreenWindow& window) {
    return window.GetClientRect().ToQRect().size();
}

// Encoded in memory: an encoder that writes to a file prints a line of its own when it fails.
QByteArray MakePng(CGraph& graph, COffscreenWindow& window) {
    if (window.GetImage().isNull())
        return {};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    window.Paint(graph).save(&buffer, "PNG");
    return buffer.data();
}

// What the toolkit leaves out: its millimetres are no whole pixels again, and a machine without the font
// would take one with serifs.
QByteArray Mended(QByteArray svg, const QSize& size) {
    const qsizetype from = svg.indexOf("<svg") + 4;
    const qsizetype to = svg.indexOf("viewBox=");
    svg.replace(
        from, to - from,
        QStringLiteral(" width=\"%1\" height=\"%2\" ").arg(size.width()).arg(size.height()).toLatin1());
    const QByteArray family = QFontInfo(CSmallFont::MakeFont()).family().toUtf8();
    return svg.replace("font-family=\"" + family + '"', "font-family=\"" + family + ", sans-serif\"");
}

QByteArray MakeSvg(CGraph& graph, COffscreenWindow& window, const QString& title) {
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(SizeOf(window));
    generator.setViewBox(QRect({}, SizeOf(window)));
    // The toolkit writes both as they are.
    generator.setTitle(title.toHtmlEscaped());
    generator.setDescription(QStringLiteral("Tracelyn"));
    window.PaintInto(generator, graph);
    return Mended(buffer.data(), SizeOf(window));
}

QByteArray MakePdf(CGraph& graph, COffscreenWindow& window, const QString& title) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(kPointsPerInch);
    writer.setPageLayout(
        {QPageSize(SizeOf(window), QString(), QPageSize::ExactMatch), QPageLayout::Portrait, QMarginsF()});
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Tracelyn"));
    window.PaintInto(writer, graph);
    return buffer.data();
}

} // namespace

PictureFormat PictureFormatOf(const QString& path) {
    const QString extension = QFileInfo(path).suffix().toLower();
    if (extension == QLatin1String("svg"))
        return PictureFormat::Svg;
    return extension == QLatin1String("pdf") ? PictureFormat::Pdf : PictureFormat::Png;
}

QByteArray EncodePicture(CGraph& graph, COffscreenWindow& window, PictureFormat format,
                         const QString& title) {
    switch (format) {
    case PictureFormat::Svg:
        return MakeSvg(graph, window, title);
    case PictureFormat::Pdf:
        return MakePdf(graph, window, title);
    case PictureFormat::Png:
        break;
    }
    return MakePng(graph, window);
}

} // namespace Tracelyn
