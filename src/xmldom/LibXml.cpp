#include "xmldom/LibXml.h"

#include <libxml/encoding.h>
#include <libxml/parser.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace Tracelyn {

namespace {

// The characters of the bytes 0x80 to 0x9F. Every other byte is the character of its number, and so are the
// five bytes here that have none.
constexpr std::array<uint16_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr uint16_t FromWindows1252(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kWindows1252High[byte - 0x80U] : byte;
}

// 0 for a character that the encoding does not have.
unsigned char ToWindows1252(unsigned character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<unsigned char>(character);
    const auto* const found = std::find(kWindows1252High.begin(), kWindows1252High.end(), character);
    return found == kWindows1252High.end()
               ? static_cast<unsigned char>(0)
               : static_cast<unsigned char>(0x80 + (found - kWindows1252High.begin()));
}

constexpr unsigned char Byte(unsigned bits) {
    return static_cast<unsigned char>(bits);
}

// Both follow the library's contract: the lengths go in as room and come out as what was used; the result is
// the number of bytes written.
int Windows1252ToUtf8(unsigned char* out, int* outLength, const unsigned char* in, int* inLength) {
    int written = 0;
    int read = 0;
    for (; read < *inLength && written + 3 <= *outLength; ++read) {
        const unsigned character = FromWindows1252(in[read]);
        if (character < 0x80) {
            out[written++] = Byte(character);
        } else if (character < 0x800) {
            out[written++] = Byte(0xC0U | (character >> 6U));
            out[written++] = Byte(0x80U | (character & 0x3FU));
        } else {
            out[written++] = Byte(0xE0U | (character >> 12U));
            out[written++] = Byte(0x80U | ((character >> 6U) & 0x3FU));
            out[written++] = Byte(0x80U | (character & 0x3FU));
        }
    }
    *inLength = read;
    *outLength = written;
    return written;
}

// The length of the character that this UTF-8 byte begins.
constexpr int Utf8Length(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead < 0xE0)
        return 2;
    return lead < 0xF0 ? 3 : 4;
}

int Utf8ToWindows1252(unsigned char* out, int* outLength, const unsigned char* in, int* inLength) {
    constexpr int kNotInEncoding = -2;
    int written = 0;
    int read = 0;
    int result = 0;
    while (in != nullptr && read < *inLength && written < *outLength) {
        int used = std::min(Utf8Length(in[read]), *inLength - read);
        if (used < Utf8Length(in[read]))
            break; // the rest of the character comes with the next call
        const int character = xmlGetUTF8Char(in + read, &used);
        const unsigned char byte = character < 0 ? Byte(0) : ToWindows1252(static_cast<unsigned>(character));
        if (byte == 0) {
            result = kNotInEncoding; // the caller writes a character reference
            break;
        }
        out[written++] = byte;
        read += used;
    }
    *inLength = read;
    *outLength = written;
    return result < 0 ? result : written;
}

bool Prepare() {
    xmlInitParser();
    xmlNewCharEncodingHandler("WINDOWS-1252", Windows1252ToUtf8, Utf8ToWindows1252);
    xmlAddEncodingAlias("WINDOWS-1252", "CP1252");
    return true;
}

} // namespace

void PrepareXmlLibrary() {
    [[maybe_unused]] static const bool prepared = Prepare();
}

} // namespace Tracelyn
