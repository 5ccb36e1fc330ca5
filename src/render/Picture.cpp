#include "render/Picture.h"

#include "render/Graph.h"
#include "render/GraphWindow.h"
#include "render/Png.h"
#include "render/SmallFont.h"
#include "render/SvgDevice.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

namespace Tracelyn {

namespace {

constexpr int kPointsPerInch = 72;

QSize SizeOf(const COffscreenWindow& window) {
    return window.GetClientRect().ToQRect().size();
}

QByteArray MakeSvg(CGraph& graph, COffscreenWindow& window, const QString& title) {
    CSvgDevice device(SizeOf(window), title, QFontInfo(CSmallFont::MakeFont()).family());
    window.PaintInto(device, graph);
    return device.GetDocument();
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
    return window.GetImage().isNull() ? QByteArray() : EncodePng(window.Paint(graph));
}

} // namespace Tracelyn
