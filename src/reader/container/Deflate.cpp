#include "reader/container/Deflate.h"

#include "support/OutputFile.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <utility>

namespace Tracelyn {

namespace {

// Pieces stay in the processor's cache between zlib, checksums and file. Compressing takes whole windows
// (32 KB) at a time, so that zlib sees the same as if it had everything at once.
using InputPiece = std::array<char, 65536>;
using OutputPiece = std::array<char, 131072>;

constexpr uint64_t kMaxBytes = std::numeric_limits<uint32_t>::max();

// The library's name for bytes.
Bytef* BytesOf(std::span<char> bytes) {
    return reinterpret_cast<Bytef*>(bytes.data());
}

void Offer(z_stream& stream, std::span<char> input) {
    stream.next_in = BytesOf(input);
    stream.avail_in = static_cast<uInt>(input.size());
}

void OfferRoom(z_stream& stream, std::span<char> output) {
    stream.next_out = BytesOf(output);
    stream.avail_out = static_cast<uInt>(output.size());
}

} // namespace

bool ReadBytes(QIODevice& device, std::span<char> bytes) {
    const auto size = static_cast<qint64>(bytes.size());
    return device.read(bytes.data(), size) == size;
}

bool WriteBytes(QIODevice& device, std::span<const char> bytes) {
    return support::WriteAll(device, {bytes.data(), bytes.size()});
}

std::optional<DeflatedContents> Deflate(QIODevice& source, QIODevice& archive,
                                        const support::Progress& progress) {
    auto left = static_cast<uint64_t>(source.size());
    z_stream stream{};
    if (left > kMaxBytes || deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS,
                                         MAX_MEM_LEVEL - 1, Z_DEFAULT_STRATEGY) != Z_OK)
        return std::nullopt;
    const std::unique_ptr<z_stream, decltype(&deflateEnd)> end(&stream, deflateEnd);
    DeflatedContents contents{.streamEnds = {'\x78', '\xDA'}}; // how every zlib stream of level 9 begins
    contents.uncompressedSize = static_cast<uint32_t>(left);
    uLong adler = adler32(0, nullptr, 0);
    uLong crc = crc32(0, nullptr, 0);
    uint64_t compressed = 0;
    int result = Z_OK;
    InputPiece input;
    OutputPiece output;
    do {
        const auto piece = std::span(input).first(std::min<size_t>(left, input.size()));
        const double done = 1 - static_cast<double>(left) / std::max(contents.uncompressedSize, 1U);
        if (!support::Report(progress, done) || !ReadBytes(source, piece))
            return std::nullopt;
        left -= piece.size();
        adler = adler32_z(adler, BytesOf(piece), piece.size());
        crc = crc32_z(crc, BytesOf(piece), piece.size());
        Offer(stream, piece);
        do {
            OfferRoom(stream, output);
            result = deflate(&stream, left == 0 ? Z_FINISH : Z_NO_FLUSH);
            const size_t size = output.size() - stream.avail_out;
            compressed += size;
            if (!WriteBytes(archive, std::span(output).first(size)))
                return std::nullopt;
        } while (stream.avail_out == 0);
    } while (left > 0);
    if (result != Z_STREAM_END || compressed + kStreamHead + kStreamTail > kMaxBytes)
        return std::nullopt;
    qToBigEndian(static_cast<uint32_t>(adler), contents.streamEnds.data() + kStreamHead);
    contents.crc = static_cast<uint32_t>(crc);
    contents.compressedSize = static_cast<uint32_t>(compressed);
    return contents;
}

bool Inflate(QIODevice& archive, const DeflatedContents& announced, QIODevice& output,
             const support::Progress& progress) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> end(&stream, inflateEnd);
    auto ends = announced.streamEnds;
    uint32_t left = announced.compressedSize;
    bool tailOffered = false;
    uint32_t done = 0;
    uLong crc = crc32(0, nullptr, 0);
    InputPiece input;
    OutputPiece plain;
    Offer(stream, std::span(ends).first(kStreamHead));
    for (int result = Z_OK; result != Z_STREAM_END;) {
        if (stream.avail_in == 0 && left > 0) {
            const auto piece = std::span(input).first(std::min<size_t>(left, input.size()));
            if (!ReadBytes(archive, piece))
                return false;
            left -= static_cast<uint32_t>(piece.size());
            Offer(stream, piece);
        } else if (stream.avail_in == 0) {
            if (std::exchange(tailOffered, true))
                return false;
            Offer(stream, std::span(ends).last(kStreamTail));
        }
        const size_t room = std::min<size_t>(announced.uncompressedSize - done, plain.size());
        // With nothing left to come there is still room for a byte, which then is one too many.
        const size_t offered = std::max<size_t>(room, 1);
        OfferRoom(stream, std::span(plain).first(offered));
        result = inflate(&stream, Z_NO_FLUSH);
        const auto got = std::span(plain).first(offered - stream.avail_out);
        if ((result != Z_OK && result != Z_STREAM_END) || got.size() > room || !WriteBytes(output, got))
            return false;
        crc = crc32_z(crc, BytesOf(got), got.size());
        done += static_cast<uint32_t>(got.size());
        if (!support::Report(progress, static_cast<double>(done) / std::max(announced.uncompressedSize, 1U)))
            return false;
    }
    return done == announced.uncompressedSize && crc == announced.crc;
}

} // namespace Tracelyn
