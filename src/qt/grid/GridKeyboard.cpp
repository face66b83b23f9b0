#include "qt/grid/GridKeyboard.h"

#include <QCursor>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include "base/Scope.h"
#include "qt/services/KeyCodes.h"

namespace kd {

bool GridKeyboard::Press(QKeyEvent& event) {
    if (m_parts.grid.EditWindow()) {
        m_editing.Send(event);  // typed on before the focus had moved
        return event.isAccepted();
    }
    return GridKey(event);
}

bool GridKeyboard::GridKey(const QKeyEvent& event) {
    const int code = KeyCodeOf(event.key());
    const int shift = ShiftOf(event.modifiers());
    if (code != 0 && m_parts.grid.KeyDown) {
        m_parts.grid.KeyDown(code, shift);
    }
    return WidgetKey(event) || m_parts.manner.KeyPress(code, shift, m_parts.scroll.Layout().FullRows()) ||
           Type(event);
}

/// Keys that act on a place of the screen.
bool GridKeyboard::WidgetKey(const QKeyEvent& event) {
    if (m_parts.manner.WholeRows()) {
        return false;
    }
    if (event.modifiers().testFlag(Qt::AltModifier)) {
        return ColumnKey(event.key());
    }
    if (event.key() == Qt::Key_F10 && event.modifiers().testFlag(Qt::ShiftModifier)) {
        OpenMenu();
        return true;
    }
    return false;
}

/// Keys of the current column's header, with Alt: the arrows with Ctrl or Shift belong to the selection.
bool GridKeyboard::ColumnKey(int key) {
    switch (key) {
        case Qt::Key_Down:
            PressHeader();
            return true;
        case Qt::Key_Right:
            m_dividers.Widen(1);
            return true;
        case Qt::Key_Left:
            m_dividers.Widen(-1);
            return true;
        case Qt::Key_Up:
            m_dividers.Fit();
            return true;
        default:
            return false;
    }
}

bool GridKeyboard::Type(const QKeyEvent& event) {
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    // Ctrl and Alt together are the third level of many keyboards, and type.
    if (m_parts.manner.WholeRows() || ctrl != alt || event.text().isEmpty() ||
        !event.text().front().isPrint()) {
        return false;
    }
    if (m_parts.manner.OpenEditor()) {
        m_editing.Replace(event.text());
    }
    return true;
}

bool GridKeyboard::Tab(bool forward) {
    return m_parts.area.hasFocus() && m_parts.manner.Tab(forward);
}

void GridKeyboard::Compose(QInputMethodEvent& event) {
    const bool types = !event.commitString().isEmpty() || !event.preeditString().isEmpty();
    if (types && m_parts.manner.OpenEditor()) {
        m_editing.Send(event);
    } else {
        event.ignore();
    }
}

void GridKeyboard::MenuKey() {
    OpenMenu();
}

void GridKeyboard::OpenMenu() {
    const GridCell cell{m_parts.grid.Row(), m_parts.grid.Col()};
    if (cell.row < 1) {
        return;
    }
    m_parts.scroll.ShowCell(cell.row, cell.screenCol);
    const QRect place = m_parts.scroll.Layout().ShownRect(cell.row, cell.screenCol);
    if (!place.isEmpty()) {
        m_menuPlace = m_parts.area.viewport()->mapToGlobal(place.bottomLeft());
        const Scope pointerAgain([this] { m_menuPlace.reset(); });
        Click(MouseButton::Right, cell, place);
    }
}

void GridKeyboard::PressHeader() {
    const GridCell cell{0, m_parts.grid.VisibleColFrom(m_parts.grid.Col(), 1)};
    m_parts.scroll.ShowCell(cell.row, cell.screenCol);
    const QRect place = m_parts.scroll.Layout().ShownRect(cell.row, cell.screenCol);
    if (!place.isEmpty()) {
        Click(MouseButton::Left, cell, place);
    }
}

void GridKeyboard::Click(MouseButton button, GridCell cell, const QRect& place) {
    const QPoint corner = place.center() + m_parts.area.viewport()->pos();
    const GridPointer pointer{cell, corner.x(), corner.y(), 0};
    if (m_parts.presses.Press(button, pointer)) {
        m_parts.presses.Release(button, pointer);
    }
}

QPoint GridKeyboard::MenuPlace() const {
    return m_menuPlace.value_or(QCursor::pos());
}

}  // namespace kd
