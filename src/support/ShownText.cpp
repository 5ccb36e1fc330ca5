#include "support/ShownText.h"

#include "support/Limits.h"

namespace support {

QString CutText(const QString& text, qsizetype most) {
    if (text.size() <= most)
        return text;
    const bool endsInsidePair = most > 0 && text[most - 1].isHighSurrogate();
    return text.left(most - (endsInsidePair ? 1 : 0));
}

QString ShownText(const QString& text) {
    const QString shown = CutText(text, limits::kMaxShownLength);
    return shown.size() < text.size() ? shown + QChar(0x2026) : text;
}

} // namespace support
