#include "SmallFont.h"

#include <QStringList>

namespace {

constexpr int kPixels = 11;

// The narrowest letters are three pixels wide: more of them than this reach out of any window.
constexpr qsizetype kMaximumCharacters = 4096;

// What the widths may keep in memory, in characters; an entry costs some itself.
constexpr size_t kMaximumRemembered = 2'000'000;
constexpr size_t kEntry = 50;

} // namespace

QFont CSmallFont::Font() {
    QFont font;
    font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(kPixels);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

QString CSmallFont::Shown(const QString& text) {
    if (text.size() <= kMaximumCharacters)
        return text;
    const bool endsInsideOne = text[kMaximumCharacters - 1].isHighSurrogate();
    return text.left(kMaximumCharacters - (endsInsideOne ? 1 : 0));
}

int CSmallFont::Width(const QString& text) {
    const QString shown = Shown(text);
    const auto found = m_Widths.find(shown);
    if (found != m_Widths.end())
        return found->second;
    if (m_nRemembered > kMaximumRemembered) {
        m_Widths.clear();
        m_nRemembered = 0;
    }
    m_nRemembered += kEntry + static_cast<size_t>(shown.size());
    return m_Widths[shown] = m_Metrics.horizontalAdvance(shown);
}
