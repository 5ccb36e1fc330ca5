// Dialog sizes that grow with the font: a dialog unit is a quarter of its average character's width and an
// eighth of its height.
#pragma once

#include <QFontMetrics>
#include <QSize>
#include <QWidget>

namespace Tracelyn {

// The size in pixels of a size in dialog units, in the widget's font.
inline QSize DialogUnits(const QWidget& widget, int width, int height) {
    const QFontMetrics metrics(widget.font());
    return {width * metrics.averageCharWidth() / 4, height * metrics.height() / 8};
}

} // namespace Tracelyn
