#include "reader/AutomaticColors.h"

#include <array>

namespace Tracelyn {

namespace {

constexpr std::array<ColorRef, 8> kOrdinary{0x00FF00, 0xFFCA82, 0x00FFFF, 0x1772F8,
                                            0x0000FF, 0xFFFFFF, 0x8000FF, 0xFFFF00};
constexpr std::array<ColorRef, 7> kBinary{0xAAAA00, 0x0000AA, 0x00AAAA, 0xAA00AA,
                                          0xAA8844, 0xAAAAAA, 0x00AA00};

} // namespace

ColorRef AutomaticColors::NextOrdinary() {
    return kOrdinary[m_nOrdinary++ % kOrdinary.size()];
}

ColorRef AutomaticColors::NextBinary() {
    return kBinary[m_nBinary++ % kBinary.size()];
}

} // namespace Tracelyn
