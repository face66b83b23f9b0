#include "qt/services/KeyCodes.h"

#include <algorithm>
#include <iterator>

#include "platform/VSFlexGrid.h"

namespace kd {

namespace {

struct KeyCode {
    Qt::Key key;
    int code;
};

constexpr KeyCode KeyCodes[] = {
    {Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},     {Qt::Key_Backtab, 9}, {Qt::Key_Return, 13},
    {Qt::Key_Enter, 13},    {Qt::Key_Escape, 27}, {Qt::Key_PageUp, 33}, {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},      {Qt::Key_Home, 36},   {Qt::Key_Left, 37},   {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},    {Qt::Key_Down, 40},   {Qt::Key_Insert, 45}, {Qt::Key_Delete, 46},
};

}  // namespace

int ShiftOf(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    shift |= modifiers.testFlag(Qt::ShiftModifier) ? sbShift : 0;
    shift |= modifiers.testFlag(Qt::ControlModifier) ? sbCtrl : 0;
    shift |= modifiers.testFlag(Qt::AltModifier) ? sbAlt : 0;
    return shift;
}

int KeyCodeOf(int key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
        key == Qt::Key_Space) {
        return key;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) {
        return key - Qt::Key_F1 + 112;
    }
    const auto* const found = std::find_if(std::begin(KeyCodes), std::end(KeyCodes),
                                           [&](const KeyCode& each) { return each.key == key; });
    return found != std::end(KeyCodes) ? found->code : 0;
}

}  // namespace kd
