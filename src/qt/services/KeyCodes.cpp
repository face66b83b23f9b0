#include "qt/services/KeyCodes.h"

#include "platform/GridKeyCodes.h"
#include "platform/VSFlexGrid.h"

namespace kd {

namespace {

struct KeyCode {
    Qt::Key key;
    int code;
};

constexpr KeyCode KeyCodes[] = {
    {Qt::Key_Backspace, kcBackspace}, {Qt::Key_Tab, kcTab},           {Qt::Key_Backtab, kcTab},
    {Qt::Key_Return, kcEnter},        {Qt::Key_Enter, kcEnter},       {Qt::Key_Escape, kcEscape},
    {Qt::Key_PageUp, kcPageUp},       {Qt::Key_PageDown, kcPageDown}, {Qt::Key_End, kcEnd},
    {Qt::Key_Home, kcHome},           {Qt::Key_Left, kcLeft},         {Qt::Key_Up, kcUp},
    {Qt::Key_Right, kcRight},         {Qt::Key_Down, kcDown},         {Qt::Key_Insert, kcInsert},
    {Qt::Key_Delete, kcDelete},
};

}  // namespace

int ShiftOf(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? sbShift : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? sbCtrl : 0) |
           (modifiers.testFlag(Qt::AltModifier) ? sbAlt : 0);
}

int KeyCodeOf(int key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
        key == Qt::Key_Space) {
        return key;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) {
        return key - Qt::Key_F1 + kcF1;
    }
    for (const KeyCode& each : KeyCodes) {
        if (each.key == key) {
            return each.code;
        }
    }
    return 0;
}

}  // namespace kd
