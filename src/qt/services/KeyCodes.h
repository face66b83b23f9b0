#pragma once

#include <Qt>

namespace kd {

/// The Shift argument of the grid's events: sbShift, sbCtrl, sbAlt.
int ShiftOf(Qt::KeyboardModifiers modifiers);
/// The key code of the grid's KeyDown: capital letters and digits as their ASCII code, other keys by the
/// number they have on every desktop keyboard driver that counts them so; 0 for the rest.
int KeyCodeOf(int key);

}  // namespace kd
