// A picture as a PNG file.
#pragma once

class QByteArray;
class QImage;

namespace Tracelyn {

// The bytes of a file with the pixels and the resolution of an opaque image, QImage::Format_RGB32. Takes a
// third of the work of the toolkit's own writer and makes a smaller file, because it knows what a frame looks
// like. Empty for a null image, and when zlib gets no memory.
QByteArray EncodePng(const QImage& image);

} // namespace Tracelyn
