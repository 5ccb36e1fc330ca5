#include "app/MenuBar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QStyleOption>

namespace Tracelyn {

namespace {

// The desktop's style, with the keyboard navigation of menus that not all styles have.
class CAltKeyStyle : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element != CE_MenuBarItem || item == nullptr || widget == nullptr || !widget->hasFocus())
            return QProxyStyle::drawControl(element, option, painter, widget);
        // Some styles highlight a title only while its menu is open.
        QStyleOptionMenuItem highlighted(*item);
        if (item->state.testFlag(State_Selected))
            highlighted.state |= State_Sunken;
        QProxyStyle::drawControl(element, &highlighted, painter, widget);
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_MenuBar_AltKeyNavigation ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

bool IsAlt(int key) {
    return key == Qt::Key_Alt || key == Qt::Key_Meta;
}

void SendAlt(QWidget& widget, QEvent::Type type) {
    QKeyEvent event(type, Qt::Key_Alt, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

CMenuBar::CMenuBar(QWidget* parent) : QMenuBar(parent) {
    auto* const altKey = new CAltKeyStyle;
    altKey->setParent(this);
    setStyle(altKey);
}

QMenu& CMenuBar::AddMenu(const QString& title) {
    QMenu& menu = *addMenu(title);
    menu.setStyle(style());
    return menu;
}

// The toolkit has no call for what a tap on Alt does, so it gets such a tap.
bool CMenuBar::OnKeyDown(const QKeyEvent& event) {
    if (event.key() != Qt::Key_F10 || event.modifiers() != Qt::NoModifier)
        return false;
    if (QWidget* const menu = QApplication::activePopupWidget()) {
        SendAlt(*menu, QEvent::KeyPress);
    } else {
        SendAlt(*window(), QEvent::ShortcutOverride);
        SendAlt(*window(), QEvent::KeyRelease);
    }
    return true;
}

bool CMenuBar::event(QEvent* event) {
    // An accepted key is no shortcut. Alt goes on to the window, where the toolkit waits for its tap.
    if (event->type() == QEvent::ShortcutOverride && hasFocus() &&
        !IsAlt(static_cast<QKeyEvent*>(event)->key())) {
        event->accept();
        return true;
    }
    return QMenuBar::event(event);
}

void CMenuBar::keyPressEvent(QKeyEvent* event) {
    if (!OnKeyDown(*event))
        QMenuBar::keyPressEvent(event);
    // What the menus do not use would go to the window.
    event->accept();
}

} // namespace Tracelyn
