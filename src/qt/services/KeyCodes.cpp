#include "qt/services/KeyCodes.h"

#include "platform/VSFlexGrid.h"

namespace kd {

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
    switch (key) {
        case Qt::Key_Backspace:
            return 8;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return 9;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return 13;
        case Qt::Key_Escape:
            return 27;
        case Qt::Key_PageUp:
            return 33;
        case Qt::Key_PageDown:
            return 34;
        case Qt::Key_End:
            return 35;
        case Qt::Key_Home:
            return 36;
        case Qt::Key_Left:
            return 37;
        case Qt::Key_Up:
            return 38;
        case Qt::Key_Right:
            return 39;
        case Qt::Key_Down:
            return 40;
        case Qt::Key_Insert:
            return 45;
        case Qt::Key_Delete:
            return 46;
        default:
            return 0;
    }
}

}  // namespace kd
