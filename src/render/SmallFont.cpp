#include "render/SmallFont.h"

#include "support/ShownText.h"

#include <QFontInfo>
#include <QStringList>

namespace Tracelyn {

namespace {

constexpr int kPixels = 11;

// The kept widths are all dropped when their texts come to more than this many characters. Each entry counts
// for some characters more, because it takes memory itself.
constexpr size_t kMaximumRemembered = 8'000'000;
constexpr size_t kCharactersPerEntry = 50;

} // namespace

QFont CSmallFont::MakeFont() {
    QFont font;
    font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(kPixels);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

QFont CSmallFont::GetNamedFont() const {
    QFont font = m_Font;
    font.setFamilies({QFontInfo(m_Font).family()});
    return font;
}

int CSmallFont::GetTextWidth(const QString& text) {
    const QString shown = support::ShownText(text);
    const auto found = m_Widths.find(shown);
    if (found != m_Widths.end())
        return found->second;
    if (m_nRemembered > kMaximumRemembered) {
        m_Widths.clear();
        m_nRemembered = 0;
    }
    m_nRemembered += kCharactersPerEntry + static_cast<size_t>(shown.size());
    return m_Widths[shown] = m_Metrics.horizontalAdvance(shown);
}

} // namespace Tracelyn
