// The picture of the graph as a file.
#pragma once

#include <QByteArray>
#include <QString>

namespace Tracelyn {

class CGraph;
class COffscreenWindow;

// SVG and PDF hold lines and texts, which can be enlarged and searched.
enum class PictureFormat { Png, Svg, Pdf };

// By the extension, whatever its case; PNG for any other and for none.
PictureFormat PictureFormatOf(const QString& path);

// The bytes of a file with the frame that the window would show. PNG has the window's pixels; in the others a
// unit of SVG or a point of PDF is a pixel at scale 1. Empty when there is no memory for the picture.
QByteArray EncodePicture(CGraph& graph, COffscreenWindow& window, PictureFormat format, const QString& title);

} // namespace Tracelyn
