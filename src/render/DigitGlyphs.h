// Numbers in the font of the picture, without shaping each of them.
#pragma once

#include <QFont>
#include <QPointF>
#include <QString>
#include <QtGlobal>

#include <array>
#include <optional>

class QPainter;

namespace Tracelyn {

// A cursor step shows a new value of every signal, and to shape their texts would be much of the step. What
// the toolkit makes of two characters of a number beside each other is therefore looked up once for all
// pairs. Widths and pixels are those that the toolkit gives for the whole text.
class CDigitGlyphs {
public:
    // Can be made only while the application object exists.
    explicit CDigitGlyphs(const QFont& font) : m_Font(font) {}

    // In pixels. Only of digits, in which a blank, a minus and a point may stand, each once, and only in a
    // font that places one after the other: nothing for all other texts, and for very long ones.
    std::optional<int> GetWidth(const QString& text);
    // Draws the text in the painter's pen from `base` on, the left end of its base line. False, and nothing
    // is drawn, where GetWidth() gives nothing, and with a painter that would draw more than these glyphs or
    // in another font.
    bool Draw(QPainter& painter, const QPointF& base, const QString& text);

private:
    static constexpr int kCharacters = 13;
    // The longest float and many decimals.
    static constexpr int kMostCharacters = 64;

    // Puts the glyphs of the text into m_Glyphs and m_Positions, and gives its width, not rounded.
    std::optional<qreal> Place(const QString& text);
    // Looks up all pairs; false when the font does more with them than to place one after the other.
    bool Learn();

    QFont m_Font;
    std::optional<bool> m_bPlain; // once it was looked up
    std::array<quint32, kCharacters> m_Glyph = {};
    // From one character to the one after it, in pixels, and to the end of the text.
    std::array<std::array<qreal, kCharacters>, kCharacters> m_Step = {};
    std::array<qreal, kCharacters> m_LastStep = {};
    std::array<quint32, kMostCharacters> m_Glyphs = {};
    std::array<QPointF, kMostCharacters> m_Positions;
};

} // namespace Tracelyn
