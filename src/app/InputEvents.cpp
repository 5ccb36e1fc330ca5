#include "app/InputEvents.h"

#include <QAbstractSlider>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cstdlib>
#include <utility>

namespace Tracelyn {

unsigned FlagsOf(const QMouseEvent& event) {
    unsigned flags = 0;
    if (event.buttons().testFlag(Qt::LeftButton))
        flags |= kLeftButton;
    if (event.buttons().testFlag(Qt::RightButton))
        flags |= kRightButton;
    if (event.buttons().testFlag(Qt::MiddleButton))
        flags |= kMiddleButton;
    if ((event.buttons() & ~(Qt::LeftButton | Qt::RightButton | Qt::MiddleButton)) != Qt::NoButton)
        flags |= kOtherButton;
    if (event.modifiers().testFlag(Qt::ShiftModifier))
        flags |= kShift;
    if (event.modifiers().testFlag(Qt::ControlModifier))
        flags |= kControl;
    return flags;
}

std::optional<int> MainDigit(const QKeyEvent& event) {
    if (event.modifiers().testFlag(Qt::KeypadModifier))
        return std::nullopt;
    if (event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9)
        return event.key() - Qt::Key_0;
#ifdef Q_OS_WIN
    if (event.nativeVirtualKey() >= '0' && event.nativeVirtualKey() <= '9')
        return static_cast<int>(event.nativeVirtualKey() - '0');
#else
    constexpr quint32 kScanOne = 10;
    constexpr quint32 kScanZero = 19;
    static const bool hasScanCodes = QGuiApplication::platformName() == QLatin1String("xcb");
    const quint32 scan = event.nativeScanCode();
    if (hasScanCodes && scan >= kScanOne && scan <= kScanZero)
        return static_cast<int>(scan - kScanOne + 1) % 10;
#endif
    return std::nullopt;
}

std::optional<ScrollCode> CodeOf(int action) {
    switch (action) {
    case QAbstractSlider::SliderSingleStepSub:
        return ScrollCode::LineLeft;
    case QAbstractSlider::SliderSingleStepAdd:
        return ScrollCode::LineRight;
    case QAbstractSlider::SliderPageStepSub:
        return ScrollCode::PageLeft;
    case QAbstractSlider::SliderPageStepAdd:
        return ScrollCode::PageRight;
    case QAbstractSlider::SliderMove:
        return ScrollCode::ThumbTrack;
    case QAbstractSlider::SliderToMinimum:
        return ScrollCode::LeftEnd;
    case QAbstractSlider::SliderToMaximum:
        return ScrollCode::RightEnd;
    default:
        return std::nullopt;
    }
}

bool CWheel::IsZooming(const QWheelEvent& event) {
    return event.modifiers().testFlag(Qt::ControlModifier);
}

// A second wheel or a touchpad turns sideways, too, which has no meaning for the zoom.
int CWheel::TakeNotches(const QWheelEvent& event) {
    const bool isZooming = IsZooming(event);
    const QPoint turn = event.angleDelta();
    const int angle = isZooming || std::abs(turn.y()) >= std::abs(turn.x()) ? turn.y() : turn.x();
    const bool turnsBack = (angle < 0) != (m_nPart < 0) && angle != 0;
    if (std::exchange(m_bZooming, isZooming) != isZooming || turnsBack)
        m_nPart = 0;
    m_nPart += angle;
    const int notches = m_nPart / QWheelEvent::DefaultDeltasPerStep;
    m_nPart %= QWheelEvent::DefaultDeltasPerStep;
    return notches;
}

} // namespace Tracelyn
