#include "render/SmallFont.h"

#include "support/ShownText.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

#include <algorithm>

namespace Tracelyn {

namespace {

constexpr int kPixels = 11;

// What was measured is all dropped when the texts come to more than this many characters. Each entry counts
// for some characters more, because it takes memory itself.
constexpr size_t kMaximumRemembered = 8'000'000;
constexpr size_t kCharactersPerEntry = 60;

} // namespace

QFont CSmallFont::MakeFont() {
    const QString usual = QStringLiteral("Tahoma");
    const QString other = QStringLiteral("DejaVu Sans");
    // What the toolkit falls back to from a family that is not there is looked up for a millisecond, and is
    // not used.
    const bool isOtherAlone = !QFontDatabase::hasFamily(usual) && QFontDatabase::hasFamily(other);
    QFont font;
    font.setFamilies(isOtherAlone ? QStringList{other} : QStringList{usual, other});
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
    const std::optional<int> width = m_Digits.GetWidth(text);
    return width ? *width : Measure(text).width;
}

CSmallFont::Measured& CSmallFont::Measure(const QString& text) {
    const QString shown = support::ShownText(text);
    const auto found = m_Measured.find(shown);
    if (found != m_Measured.end())
        return found->second;
    if (m_nRemembered > kMaximumRemembered) {
        m_Measured.clear();
        m_nRemembered = 0;
    }
    m_nRemembered += kCharactersPerEntry + static_cast<size_t>(shown.size());
    return m_Measured[shown] = {m_Metrics.horizontalAdvance(shown), std::nullopt};
}

bool CSmallFont::KnowsInk(const QString& text) {
    constexpr char16_t kFirstMark = 0x300;
    return std::ranges::all_of(text, [](QChar letter) { return letter.unicode() < kFirstMark; });
}

QRect CSmallFont::GetInk(const QString& text) {
    std::optional<QRect>& ink = Measure(text).ink;
    if (!ink)
        ink = m_Metrics.boundingRect(support::ShownText(text));
    return *ink;
}

} // namespace Tracelyn
