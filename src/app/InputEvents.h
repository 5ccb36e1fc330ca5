// What the toolkit's input means to the graph.
#pragma once

#include "render/Graph.h"

#include <optional>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace Tracelyn {

// The buttons and keys held down, a set of MouseFlags.
unsigned FlagsOf(const QMouseEvent& event);

// The digit on a key above the letters; none for the numeric keypad. Where the system tells which key it was,
// Shift and the keyboard's layout make no difference.
std::optional<int> MainDigit(const QKeyEvent& event);

// What a QAbstractSlider::SliderAction does to the picture; none for the actions that no part of a bar has.
std::optional<ScrollCode> CodeOf(int action);

// Counts the notches of the wheel. Fine wheels and touchpads send parts of a notch, which add up.
class CWheel {
public:
    // With Ctrl the wheel zooms; else it scrolls.
    static bool IsZooming(const QWheelEvent& event);
    // The notches that this event completes: above 0 up or to the left, below 0 down or to the right. What is
    // left of a notch is forgotten when the wheel turns back, or begins to do the other of the two.
    int TakeNotches(const QWheelEvent& event);

private:
    int m_nPart = 0; // of a notch, in eighths of a degree
    bool m_bZooming = false;
};

} // namespace Tracelyn
