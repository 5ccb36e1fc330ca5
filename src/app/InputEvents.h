// What the toolkit's input means to the graph.
#pragma once

#include "render/Graph.h"

#include <optional>

class QKeyEvent;
class QMouseEvent;

namespace Tracelyn {

// The buttons and keys held down, a set of MouseFlags.
unsigned FlagsOf(const QMouseEvent& event);

// The digit on a key above the letters; none for the numeric keypad. Where the system tells which key it was,
// Shift and the keyboard's layout make no difference.
std::optional<int> MainDigit(const QKeyEvent& event);

// What a QAbstractSlider::SliderAction does to the picture; none for the actions that no part of a bar has.
std::optional<ScrollCode> CodeOf(int action);

} // namespace Tracelyn
