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

// Read or write the whole span; false when that fails.
bool ReadBytes(QIODevice& device, std::span<char> bytes);
bool WriteBytes(QIODevice& device, std::span<const char> bytes);

// What the container cuts off an entry's zlib stream: its first 2 bytes and its last 4.
inline constexpr size_t kStreamHead = 2;
inline constexpr size_t kStreamTail = 4;

// What the container stores about an entry's contents beside their raw deflate data.
struct DeflatedContents {
    std::array<char, kStreamHead + kStreamTail> streamEnds{};
    uint32_t crc = 0; // CRC-32 of the plain bytes
    uint32_t compressedSize = 0;
    uint32_t uncompressedSize = 0;
};

// Compresses the whole source and appends the raw deflate data to the archive: the same bytes as zlib's
// compress2 makes at level 9, and on one core, since every match and block depends on what came before it.
// Nothing when reading, writing or compressing fails, when a size does not fit into 32 bits, or when it is
// asked to stop.
std::optional<DeflatedContents> Deflate(QIODevice& source, QIODevice& archive,
                                        const support::Progress& progress);

// Expands the raw deflate data at the archive's position into `output`. Never reads or writes more than the
// announced sizes. False when a size or one of the two checksums is not the announced one, or when reading or
// writing fails, or when it is asked to stop.
bool Inflate(QIODevice& archive, const DeflatedContents& announced, QIODevice& output,
             const support::Progress& progress);

} // namespace Tracelyn
