// The menu bar, which takes the keyboard with a tap on Alt or F10 and gives it back with another one or
// Escape.
#pragma once

#include <QMenuBar>

namespace Tracelyn {

// Alt alone (pressed and let go) and F10 highlight the first title, whatever the style of the desktop says.
// From then on every key is the menus': none of the window's shortcuts acts.
class CMenuBar : public QMenuBar {
    Q_OBJECT

public:
    explicit CMenuBar(QWidget* parent);

    // A menu of the bar, which owns it.
    QMenu& AddMenu(const QString& title);
    // True for F10 alone, which takes or gives back the keyboard as a tap on Alt does.
    bool OnKeyDown(const QKeyEvent& event);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace Tracelyn
