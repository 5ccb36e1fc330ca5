#include "reader/container/Deflate.h"

#include "support/OutputFile.h"

#include <QIODevice>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <utility>

namespace Tracelyn {

namespace {

// Pieces stay in the processor's cache between zlib, checksums and file. Compressing takes whole windows
// (32 KB) at a time, so that zlib sees the same as if it had everything at once.
using InputPiece = std::array<Bytef, 65536>;
using OutputPiece = std::array<Bytef, 131072>;

constexpr uint64_t kLargest = std::numeric_limits<uint32_t>::max();

bool Write(QIODevice& device, std::span<const Bytef> bytes) {
    return support::WriteAll(device, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool Read(QIODevice& device, std::span<Bytef> bytes) {
    const auto size = static_cast<qint64>(bytes.size());
    return device.read(reinterpret_cast<char*>(bytes.data()), size) == size;
}

void Offer(z_stream& stream, std::span<Bytef> input) {
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
}

} // namespace

std::optional<DeflatedContents> Deflate(QIODevice& source, QIODevice& archive) {
    auto left = static_cast<uint64_t>(source.size());
    z_stream stream{};
    if (left > kLargest || deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS,
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
        if (!Read(source, piece))
            return std::nullopt;
        left -= piece.size();
        adler = adler32_z(adler, piece.data(), piece.size());
        crc = crc32_z(crc, piece.data(), piece.size());
        Offer(stream, piece);
        do {
            stream.next_out = output.data();
            stream.avail_out = static_cast<uInt>(output.size());
            result = deflate(&stream, left == 0 ? Z_FINISH : Z_NO_FLUSH);
            const size_t size = output.size() - stream.avail_out;
            compressed += size;
            if (!Write(archive, std::span(output).first(size)))
                return std::nullopt;
        } while (stream.avail_out == 0);
    } while (left > 0);
    if (result != Z_STREAM_END || compressed + kStreamHead + kStreamTail > kLargest)
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
    std::array<Bytef, kStreamHead + kStreamTail> ends{};
    std::memcpy(ends.data(), announced.streamEnds.data(), ends.size());
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
            if (!Read(archive, piece))
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
        const uInt offered = std::max<uInt>(static_cast<uInt>(room), 1);
        stream.next_out = plain.data();
        stream.avail_out = offered;
        result = inflate(&stream, Z_NO_FLUSH);
        const auto got = std::span(plain).first(offered - stream.avail_out);
        if ((result != Z_OK && result != Z_STREAM_END) || got.size() > room || !Write(output, got))
            return false;
        crc = crc32_z(crc, got.data(), got.size());
        done += static_cast<uint32_t>(got.size());
        if (progress && done > 0)
            progress(static_cast<double>(done) / announced.uncompressedSize);
    }
    return done == announced.uncompressedSize && crc == announced.crc;
}

} // namespace Tracelyn
