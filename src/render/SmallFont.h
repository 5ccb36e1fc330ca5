// The font of the picture, and how wide texts are in it.
#pragma once

#include "render/DigitGlyphs.h"

#include <QFont>
#include <QFontMetrics>
#include <QRect>
#include <QString>

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace Tracelyn {

// Measuring a text takes long: a millisecond for some thousand letters, or for some hundred letters of mixed
// scripts. The font therefore keeps what it has measured; most frames ask for those of the frame
// before. It can be made only while the application object exists.
class CSmallFont {
public:
    CSmallFont() : m_Font(MakeFont()), m_Metrics(m_Font), m_Digits(m_Font) {}
    CSmallFont(const CSmallFont&) = delete;
    CSmallFont& operator=(const CSmallFont&) = delete;

    // 8 points at 96 dpi, which are 11 pixels, whatever the resolution of the screen.
    static QFont MakeFont();

    // In pixels. Of a very long text only the beginning is shown, and only that is measured.
    int GetTextWidth(const QString& text);
    // Where the ink of a text is whose base line begins at 0, 0: it may reach out of the text's width. Only
    // for texts that KnowsInk() is true for: the toolkit forgets marks above and below letters, and more.
    QRect GetInk(const QString& text);
    // Whether the text has Latin letters without marks of their own, and the like.
    static bool KnowsInk(const QString& text);

    // Texts that are numbers are measured and drawn with them.
    CDigitGlyphs& GetDigits() { return m_Digits; }
    const QFont& GetFont() const { return m_Font; }
    // By the one name under which this machine has it.
    QFont GetNamedFont() const;
    int GetAscent() const { return m_Metrics.ascent(); }

private:
    struct Measured {
        int width;
        std::optional<QRect> ink; // once somebody has asked for it
    };
    Measured& Measure(const QString& text);

    QFont m_Font;
    QFontMetrics m_Metrics;
    CDigitGlyphs m_Digits;
    std::unordered_map<QString, Measured> m_Measured;
    // Characters in m_Measured, with some for each entry.
    size_t m_nRemembered = 0;
};

} // namespace Tracelyn
