#include "render/Png.h"

#include <QByteArray>
#include <QImage>
#include <QtEndian>

#include <zlib.h>

#include <array>
#include <cstdint>
#include <functional>
#include <numeric>
#include <span>
#include <vector>

namespace Tracelyn {

namespace {

constexpr std::array<char, 8> kSignature{'\x89', 'P', 'N', 'G', '\r', '\n', '\x1A', '\n'};

constexpr uint8_t kBitsPerChannel = 8;
constexpr uint8_t kRgb = 2; // the type of a picture whose pixels are red, green and blue
constexpr size_t kChannels = 3;
constexpr uint8_t kPerMetre = 1; // the unit of the resolution

// How a row is stored, in its first byte.
constexpr Bytef kPlain = 0;
constexpr Bytef kDifference = 2; // from the row above, channel by channel

// A frame is full of runs and of rows that are like the one above, so the first long match is taken: against
// zlib's usual level the file is 2 % larger for a sixth less work. But all positions within a match are
// remembered, which keeps the distances of a run's matches short: 20 % of the file. A small table of
// positions is quicker to keep up to date.
constexpr int kGreedyLevel = 3;
constexpr int kMemoryLevel = 6;
constexpr int kLongestMatch = 258;
constexpr int kMatchesTried = 32;

void AppendNumber(QByteArray& bytes, uint32_t number) {
    std::array<char, sizeof(number)> text{};
    qToBigEndian(number, text.data());
    bytes.append(text.data(), std::ssize(text));
}

void AppendChunk(QByteArray& file, const char* type, std::span<const char> contents) {
    AppendNumber(file, static_cast<uint32_t>(contents.size()));
    const qsizetype begin = file.size();
    file.append(type);
    file.append(contents.data(), std::ssize(contents));
    const auto* const checked = reinterpret_cast<const Bytef*>(file.constData() + begin);
    AppendNumber(file, static_cast<uint32_t>(crc32_z(0, checked, static_cast<size_t>(file.size() - begin))));
}

// The compressed rows, in chunks of limited size at the end of the file.
class CRowChunks {
public:
    // Borrows the file.
    explicit CRowChunks(QByteArray& file) : m_File(file) {
        m_bOpen = deflateInit2(&m_Stream, kGreedyLevel, Z_DEFLATED, MAX_WBITS, kMemoryLevel,
                               Z_DEFAULT_STRATEGY) == Z_OK;
        if (m_bOpen)
            deflateTune(&m_Stream, kLongestMatch, kLongestMatch, kLongestMatch, kMatchesTried);
        OfferRoom();
    }
    CRowChunks(const CRowChunks&) = delete;
    CRowChunks& operator=(const CRowChunks&) = delete;
    ~CRowChunks() { deflateEnd(&m_Stream); }

    // False when there is no memory.
    bool IsOpen() const { return m_bOpen; }

    void Add(std::span<Bytef> row) {
        m_Stream.next_in = row.data();
        m_Stream.avail_in = static_cast<uInt>(row.size());
        while (m_Stream.avail_in > 0) {
            deflate(&m_Stream, Z_NO_FLUSH);
            if (m_Stream.avail_out == 0)
                AppendPiece();
        }
    }

    void Finish() {
        while (deflate(&m_Stream, Z_FINISH) != Z_STREAM_END)
            AppendPiece();
        AppendPiece();
    }

private:
    void OfferRoom() {
        m_Stream.next_out = reinterpret_cast<Bytef*>(m_Piece.data());
        m_Stream.avail_out = static_cast<uInt>(m_Piece.size());
    }

    void AppendPiece() {
        AppendChunk(m_File, "IDAT", std::span(m_Piece).first(m_Piece.size() - m_Stream.avail_out));
        OfferRoom();
    }

    QByteArray& m_File;
    z_stream m_Stream{};
    bool m_bOpen = false;
    std::array<char, 65536> m_Piece;
};

std::span<const QRgb> RowOf(const QImage& image, int y) {
    return {reinterpret_cast<const QRgb*>(image.constScanLine(y)), static_cast<size_t>(image.width())};
}

void StorePlain(std::span<const QRgb> pixels, std::span<Bytef> row) {
    row[0] = kPlain;
    Bytef* to = &row[1];
    for (const QRgb pixel : pixels) {
        to[0] = static_cast<Bytef>(pixel >> 16);
        to[1] = static_cast<Bytef>(pixel >> 8);
        to[2] = static_cast<Bytef>(pixel);
        to += kChannels;
    }
}

void StoreDifference(std::span<const QRgb> pixels, std::span<const QRgb> above, std::span<Bytef> row) {
    row[0] = kDifference;
    Bytef* to = &row[1];
    const QRgb* old = above.data();
    for (const QRgb pixel : pixels) {
        to[0] = static_cast<Bytef>((pixel >> 16) - (*old >> 16));
        to[1] = static_cast<Bytef>((pixel >> 8) - (*old >> 8));
        to[2] = static_cast<Bytef>(pixel - *old);
        to += kChannels;
        ++old;
    }
}

// The number of pixels that are not the same.
int CountDifferent(std::span<const QRgb> pixels, std::span<const QRgb> others) {
    return std::inner_product(pixels.begin(), pixels.end(), others.begin(), 0, std::plus<>(),
                              [](QRgb pixel, QRgb other) { return pixel != other ? 1 : 0; });
}

// Whether few pixels differ from those above, compared with those that differ from the pixel to their left:
// then the difference from the row above is the one with longer runs.
bool IsLikeAbove(std::span<const QRgb> pixels, std::span<const QRgb> above) {
    return 2 * CountDifferent(pixels, above) <= CountDifferent(pixels.subspan(1), pixels);
}

// False when there is no memory.
bool AppendRows(QByteArray& file, const QImage& image) {
    CRowChunks chunks(file);
    if (!chunks.IsOpen())
        return false;
    std::vector<Bytef> row(1 + kChannels * static_cast<size_t>(image.width()));
    std::span<const QRgb> above;
    for (int y = 0; y < image.height(); ++y) {
        const std::span<const QRgb> pixels = RowOf(image, y);
        if (y > 0 && IsLikeAbove(pixels, above))
            StoreDifference(pixels, above, row);
        else
            StorePlain(pixels, row);
        chunks.Add(row);
        above = pixels;
    }
    chunks.Finish();
    return true;
}

} // namespace

QByteArray EncodePng(const QImage& image) {
    if (image.isNull())
        return {};
    QByteArray file(kSignature.data(), std::ssize(kSignature));
    QByteArray head;
    AppendNumber(head, static_cast<uint32_t>(image.width()));
    AppendNumber(head, static_cast<uint32_t>(image.height()));
    for (const uint8_t byte : {kBitsPerChannel, kRgb, uint8_t{0}, uint8_t{0}, uint8_t{0}})
        head.append(
            static_cast<char>(byte)); // the last three: the only compression and filters, no interlace
    AppendChunk(file, "IHDR", head);
    QByteArray resolution;
    AppendNumber(resolution, static_cast<uint32_t>(image.dotsPerMeterX()));
    AppendNumber(resolution, static_cast<uint32_t>(image.dotsPerMeterY()));
    resolution.append(static_cast<char>(kPerMetre));
    AppendChunk(file, "pHYs", resolution);
    if (!AppendRows(file, image))
        return {};
    AppendChunk(file, "IEND", {});
    return file;
}

} // namespace Tracelyn
