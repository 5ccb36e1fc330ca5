#include "render/DigitGlyphs.h"

#include <QGlyphRun>
#include <QList>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>

#include <cstddef>
#include <utility>

namespace Tracelyn {

namespace {

constexpr QLatin1String kAlphabet(" -.0123456789");
constexpr size_t kFirstDigit = 3;

// Where the character is in the alphabet.
std::optional<size_t> IndexOf(QChar character) {
    const char16_t unit = character.unicode();
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0' + kFirstDigit;
    switch (unit) {
    case u' ':
        return 0;
    case u'-':
        return 1;
    case u'.':
        return 2;
    default:
        return std::nullopt;
    }
}

// A text in which every character of the alphabet comes after every one, itself too, just once.
QString AllPairs() {
    QString text;
    for (qsizetype first = 0; first < kAlphabet.size(); ++first) {
        text += kAlphabet[first];
        for (qsizetype second = first + 1; second < kAlphabet.size(); ++second) {
            text += kAlphabet[first];
            text += kAlphabet[second];
        }
    }
    return text + kAlphabet[0];
}

} // namespace

bool CDigitGlyphs::Learn() {
    static_assert(kAlphabet.size() == kCharacters);
    if (m_Font.letterSpacing() != 0 || m_Font.wordSpacing() != 0 || m_Font.underline() || m_Font.overline() ||
        m_Font.strikeOut())
        return false;
    const QString text = AllPairs();
    QTextLayout layout(text, m_Font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    const QRawFont rawFont = QRawFont::fromFont(m_Font);
    if (runs.size() != 1 || runs[0].rawFont() != rawFont)
        return false;
    const QList<quint32> glyphs = runs[0].glyphIndexes();
    const QList<QPointF> positions = runs[0].positions();
    if (glyphs.size() != text.size() || positions.size() != text.size())
        return false;

    std::array<std::optional<quint32>, kCharacters> known;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const size_t index = *IndexOf(text[i]);
        if (known[index].value_or(glyphs[i]) != glyphs[i] || positions[i].y() != positions[0].y())
            return false;
        known[index] = m_Glyph[index] = glyphs[i];
        if (i > 0)
            m_Step[*IndexOf(text[i - 1])][index] = positions[i].x() - positions[i - 1].x();
    }
    const QList<QPointF> advances = rawFont.advancesForGlyphIndexes({m_Glyph.begin(), m_Glyph.end()});
    for (size_t index = 0; index < kCharacters; ++index)
        m_LastStep[index] = advances[static_cast<qsizetype>(index)].x();
    return true;
}

std::optional<qreal> CDigitGlyphs::Place(const QString& text) {
    if (text.isEmpty() || text.size() > kMostCharacters)
        return std::nullopt;
    qreal x = 0;
    std::optional<size_t> before;
    std::array<bool, kFirstDigit> seen = {};
    for (qsizetype i = 0; i < text.size(); ++i) {
        const std::optional<size_t> index = IndexOf(text[i]);
        if (!index)
            return std::nullopt;
        // Three points are one character in some fonts.
        if (*index < kFirstDigit && std::exchange(seen[*index], true))
            return std::nullopt;
        if (!m_bPlain)
            m_bPlain = Learn();
        if (!*m_bPlain)
            return std::nullopt;
        if (before)
            x += m_Step[*before][*index];
        m_Glyphs[static_cast<size_t>(i)] = m_Glyph[*index];
        m_Positions[static_cast<size_t>(i)] = QPointF(x, 0);
        before = index;
    }
    return x + m_LastStep[*before];
}

std::optional<int> CDigitGlyphs::GetWidth(const QString& text) {
    const std::optional<qreal> width = Place(text);
    if (!width)
        return std::nullopt;
    return qRound(*width);
}

bool CDigitGlyphs::Draw(QPainter& painter, const QPointF& base, const QString& text) {
    if (painter.layoutDirection() == Qt::RightToLeft || painter.backgroundMode() == Qt::OpaqueMode ||
        painter.font() != m_Font || !Place(text))
        return false;
    QGlyphRun run;
    // A raw font is good in one thread only, and this object may draw in several, one after the other.
    run.setRawFont(QRawFont::fromFont(m_Font));
    run.setRawData(m_Glyphs.data(), m_Positions.data(), static_cast<int>(text.size()));
    painter.drawGlyphRun(base, run);
    return true;
}

} // namespace Tracelyn
