#include "reader/container/Deflate.h"

#include "support/BackgroundTasks.h"
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

// Whether a zlib stream that needs no dictionary begins with these bytes.
bool IsStreamHead(char method, char flags) {
    constexpr int kMethodBits = 15;
    constexpr int kLargestWindow = 7;
    constexpr int kDictionary = 32;
    constexpr int kCheckedBy = 31;
    const int first = static_cast<unsigned char>(method);
    const int second = static_cast<unsigned char>(flags);
    return (first & kMethodBits) == Z_DEFLATED && first >> 4 <= kLargestWindow &&
           (second & kDictionary) == 0 && (first * 256 + second) % kCheckedBy == 0;
}

// What inflates: an entry's compressed data and, behind it, the end of its zlib stream.
class CCompressedInput {
public:
    CCompressedInput(QIODevice& archive, const DeflatedContents& announced)
        : m_Archive(archive), m_Ends(announced.streamEnds), m_nLeft(announced.compressedSize) {}

    // The next piece; false when reading fails or nothing is left.
    bool OfferNext(z_stream& stream) {
        if (m_nLeft == 0) {
            Offer(stream, std::span(m_Ends).last(kStreamTail));
            return !std::exchange(m_bTailOffered, true);
        }
        const auto piece = std::span(m_Piece).first(std::min<size_t>(m_nLeft, m_Piece.size()));
        m_nLeft -= static_cast<uint32_t>(piece.size());
        Offer(stream, piece);
        return ReadBytes(m_Archive, piece);
    }

    // The checksum at the end of the zlib stream: the bytes that follow the last block, whether they are
    // still part of the data or not.
    std::optional<uint32_t> ReadStreamTail(z_stream& stream) {
        uint32_t tail = 0;
        for (size_t i = 0; i < kStreamTail; ++i) {
            if (stream.avail_in == 0 && !OfferNext(stream))
                return std::nullopt;
            tail = tail << 8 | *stream.next_in++;
            --stream.avail_in;
        }
        return tail;
    }

private:
    QIODevice& m_Archive;
    decltype(DeflatedContents::streamEnds) m_Ends;
    uint32_t m_nLeft; // of the compressed data
    bool m_bTailOffered = false;
    InputPiece m_Piece;
};

// Where plain bytes go. While one piece is written and its checksums are worked out, another core can fill
// the next.
class CPlainOutput {
public:
    explicit CPlainOutput(QIODevice& output) : m_Output(output) {}

    // Where the next bytes belong: at least one.
    std::span<char> GetRoom() { return std::span(*m_Filling).subspan(m_nFilled); }
    // That many bytes of the room are plain ones. False when writing failed.
    bool Take(size_t bytes) {
        m_nFilled += bytes;
        return m_nFilled < m_Filling->size() || PassOn();
    }
    // Writes what is left, which is everything in most recordings: another core would only cost time then.
    // False when writing failed.
    bool Finish() {
        if (!WaitForPiece())
            return false;
        Write(std::span(*m_Filling).first(m_nFilled));
        return !m_bFailed;
    }
    // Of all bytes, after Finish.
    uint32_t GetAdler() const { return static_cast<uint32_t>(m_nAdler); }
    uint32_t GetCrc() const { return static_cast<uint32_t>(m_nCrc); }

private:
    // Fits into a core's cache; large enough that the threads of the pieces cost next to nothing.
    using Piece = std::array<char, 524288>;

    bool PassOn() {
        if (!WaitForPiece())
            return false;
        m_Filling.swap(m_Written);
        const auto piece = std::span(*m_Written).first(std::exchange(m_nFilled, 0));
        m_Tasks.Add([this, piece] { Write(piece); });
        return true;
    }
    void Write(std::span<char> piece) {
        m_bFailed = !WriteBytes(m_Output, piece);
        m_nAdler = adler32_z(m_nAdler, BytesOf(piece), piece.size());
        m_nCrc = crc32_z(m_nCrc, BytesOf(piece), piece.size());
    }
    bool WaitForPiece() {
        m_Tasks.Finish();
        return !m_bFailed;
    }

    QIODevice& m_Output;
    std::unique_ptr<Piece> m_Filling = std::make_unique_for_overwrite<Piece>();
    std::unique_ptr<Piece> m_Written = std::make_unique_for_overwrite<Piece>();
    size_t m_nFilled = 0;
    bool m_bFailed = false;
    uLong m_nAdler = adler32(0, nullptr, 0);
    uLong m_nCrc = crc32(0, nullptr, 0);
    support::CBackgroundTasks m_Tasks; // last: its end waits for the piece
};

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
    if (!IsStreamHead(announced.streamEnds[0], announced.streamEnds[1]) ||
        inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return false;
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> end(&stream, inflateEnd);
    CCompressedInput input(archive, announced);
    CPlainOutput plain(output);
    uint32_t done = 0;
    for (int result = Z_OK; result != Z_STREAM_END;) {
        if (stream.avail_in == 0 && !input.OfferNext(stream))
            return false;
        const uint32_t left = announced.uncompressedSize - done;
        // With nothing left to come there is still room for a byte, which then is one too many.
        const auto room = plain.GetRoom();
        const auto offered = room.first(std::clamp<size_t>(left, 1, room.size()));
        OfferRoom(stream, offered);
        result = inflate(&stream, Z_NO_FLUSH);
        const size_t got = offered.size() - stream.avail_out;
        if ((result != Z_OK && result != Z_STREAM_END) || got > left || !plain.Take(got))
            return false;
        done += static_cast<uint32_t>(got);
        if (!support::Report(progress, static_cast<double>(done) / std::max(announced.uncompressedSize, 1U)))
            return false;
    }
    const std::optional<uint32_t> adler = input.ReadStreamTail(stream);
    return plain.Finish() && adler == plain.GetAdler() && announced.crc == plain.GetCrc() &&
           done == announced.uncompressedSize;
}

} // namespace Tracelyn
