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
std::optional<size_t> NumberOf(QChar character) {
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
        const size_t number = *NumberOf(text[i]);
        if (known[number].value_or(glyphs[i]) != glyphs[i] || positions[i].y() != positions[0].y())
            return false;
        known[number] = m_Glyph[number] = glyphs[i];
        if (i > 0)
            m_Step[*NumberOf(text[i - 1])][number] = positions[i].x() - positions[i - 1].x();
    }
    const QList<QPointF> advances = rawFont.advancesForGlyphIndexes({m_Glyph.begin(), m_Glyph.end()});
    for (size_t number = 0; number < kCharacters; ++number)
        m_LastStep[number] = advances[static_cast<qsizetype>(number)].x();
    return true;
}

std::optional<qreal> CDigitGlyphs::Place(const QString& text) {
    if (text.isEmpty() || text.size() > kMostCharacters)
        return std::nullopt;
    qreal x = 0;
    std::optional<size_t> before;
    std::array<bool, kFirstDigit> seen = {};
    for (qsizetype i = 0; i < text.size(); ++i) {
        const std::optional<size_t> number = NumberOf(text[i]);
        if (!number)
            return std::nullopt;
        // Three points are one character in some fonts.
        if (*number < kFirstDigit && std::exchange(seen[*number], true))
            return std::nullopt;
        if (!m_bPlain)
            m_bPlain = Learn();
        if (!*m_bPlain)
            return std::nullopt;
        if (before)
            x += m_Step[*before][*number];
        m_Glyphs[static_cast<size_t>(i)] = m_Glyph[*number];
        m_Positions[static_cast<size_t>(i)] = QPointF(x, 0);
        before = number;
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
