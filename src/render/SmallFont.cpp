#include "SmallFont.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr int kPixels = 11;

// Letters are three pixels wide or more: a text with as many of them as the window has pixels reaches far out
// of it. The toolkit takes a millisecond for some thousand.
constexpr int kFewestShown = 256;
constexpr int kMostShown = 4096;

// What the widths may keep in memory, in characters; an entry costs some itself.
constexpr size_t kMaximumRemembered = 8'000'000;
constexpr size_t kEntry = 50;

} // namespace

QFont CSmallFont::Font() {
    QFont font;
    font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(kPixels);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

void CSmallFont::SetWindowWidth(int width) {
    m_nMaximumShown = std::clamp(width, kFewestShown, kMostShown);
}

QString CSmallFont::Shown(const QString& text) const {
    if (text.size() <= m_nMaximumShown)
        return text;
    const bool endsInsidePair = text[m_nMaximumShown - 1].isHighSurrogate();
    return text.left(m_nMaximumShown - (endsInsidePair ? 1 : 0));
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
