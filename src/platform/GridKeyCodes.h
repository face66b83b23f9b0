#pragma once

namespace kd {

/// Codes of keys, as the grid's KeyDown counts them. Capital letters and digits have their ASCII code; kcA,
/// kcC and kcV are those that mean something with Ctrl.
enum GridKeyCode : int {
    kcBackspace = 8,
    kcTab = 9,
    kcEnter = 13,
    kcEscape = 27,
    kcSpace = 32,
    kcPageUp = 33,
    kcPageDown = 34,
    kcEnd = 35,
    kcHome = 36,
    kcLeft = 37,
    kcUp = 38,
    kcRight = 39,
    kcDown = 40,
    kcInsert = 45,
    kcDelete = 46,
    kcA = 65,
    kcC = 67,
    kcV = 86,
    kcF1 = 112,  // the other function keys follow
    kcF2 = 113,
    kcF10 = 121
};

}  // namespace kd
