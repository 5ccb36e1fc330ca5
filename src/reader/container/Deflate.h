// Compresses and expands the contents of one container entry, piece by piece: never the whole in memory.
#pragma once

#include "support/Progress.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

class QIODevice;

namespace Tracelyn {

// Both for all the bytes: false when fewer can be read or written.
bool ReadBytes(QIODevice& device, std::span<char> bytes);
bool WriteBytes(QIODevice& device, std::span<const char> bytes);

// What the container cuts off an entry's zlib stream: its first 2 bytes and its last 4.
inline constexpr size_t kStreamHead = 2;
inline constexpr size_t kStreamTail = 4;

// What the container keeps of an entry beside its raw deflate data.
struct DeflatedContents {
    std::array<char, kStreamHead + kStreamTail> streamEnds{};
    uint32_t crc = 0; // CRC-32 of the plain bytes
    uint32_t compressedSize = 0;
    uint32_t uncompressedSize = 0;
};

// Appends the raw deflate data of the whole source to the archive, byte for byte as compress2 makes it at
// level 9. Nothing when reading, writing or compressing fails or when a size does not fit into 32 bits.
std::optional<DeflatedContents> Deflate(QIODevice& source, QIODevice& archive);

// Expands the raw data that the archive stands at. Writes at most the announced size and reads at most the
// announced compressed size; false when a size or one of the two checksums turns out to be another, or when
// reading or writing fails.
bool Inflate(QIODevice& archive, const DeflatedContents& announced, QIODevice& output,
             const support::Progress& progress);

} // namespace Tracelyn
