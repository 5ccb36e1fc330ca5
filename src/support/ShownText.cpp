#include "support/ShownText.h"

#include "support/Limits.h"

namespace support {

QString ShownText(const QString& text) {
    constexpr qsizetype kMaxLength = limits::kMaxShownLength;
    if (text.size() <= kMaxLength)
        return text;
    const bool endsInsidePair = text[kMaxLength - 1].isHighSurrogate();
    return text.left(kMaxLength - (endsInsidePair ? 1 : 0)) + QChar(0x2026);
}

} // namespace support
