#include "support/ShownText.h"

#include "support/Limits.h"

namespace support {

QString ShownText(const QString& text) {
    constexpr qsizetype kMost = limits::kShownText;
    if (text.size() <= kMost)
        return text;
    const bool endsInsidePair = text[kMost - 1].isHighSurrogate();
    return text.left(kMost - (endsInsidePair ? 1 : 0)) + QChar(0x2026);
}

} // namespace support
