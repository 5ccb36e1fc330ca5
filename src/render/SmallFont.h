// The font of the picture, and how wide texts are in it.
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QString>

#include <cstddef>
#include <unordered_map>

namespace Tracelyn {

// Remembers the widths it has measured, for a frame asks for the same ones as the frame before. Needs the
// application object.
class CSmallFont {
public:
    CSmallFont() : m_Font(Font()), m_Metrics(m_Font) {}
    CSmallFont(const CSmallFont&) = delete;
    CSmallFont& operator=(const CSmallFont&) = delete;

    // 8 points at 96 dpi, whatever the screen.
    static QFont Font();

    // Of what is shown of the text, in pixels: the toolkit takes a millisecond for some thousand letters, for
    // some hundred of mixed scripts.
    int Width(const QString& text);

    const QFont& GetFont() const { return m_Font; }
    int Ascent() const { return m_Metrics.ascent(); }

private:
    QFont m_Font;
    QFontMetrics m_Metrics;
    std::unordered_map<QString, int> m_Widths;
    size_t m_nRemembered = 0;
};

} // namespace Tracelyn
