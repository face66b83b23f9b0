#include "platform/GridPresses.h"

#include "platform/CellMoves.h"

namespace kd {

bool GridPresses::Press(MouseButton button, const GridPointer& pointer) {
    Forget();
    m_grid.SetMouseCell(pointer.cell.row, pointer.cell.screenCol);
    bool cancel = false;
    if (m_grid.BeforeMouseDown) {
        m_grid.BeforeMouseDown(button, pointer.shift, pointer.x, pointer.y, cancel);
    }
    if (cancel) {
        return false;
    }
    if (button == MouseButton::Left) {
        if (!m_grid.FinishEdit()) {
            return false;
        }
        if (IsDataCell(pointer.cell)) {
            Pick(pointer.cell, (pointer.shift & sbShift) != 0);
        }
    }
    m_pressed = button;
    if (m_grid.MouseDown) {
        m_grid.MouseDown(button, pointer.shift, pointer.x, pointer.y);
    }
    return true;
}

void GridPresses::Pick(GridCell cell, bool extend) {
    if (cell.row >= m_grid.Rows() || cell.screenCol >= m_grid.Cols()) {
        return;  // what the finished edit set off took the cell away
    }
    m_dragging = m_manner.Pick(cell, extend);
}

void GridPresses::DoublePress(MouseButton button, const GridPointer& pointer) {
    // A drag tells that the press picked the cell.
    if (Press(button, pointer) && m_dragging && pointer.cell == GridCell{m_grid.Row(), m_grid.Col()}) {
        m_dragging = !m_manner.OpenEditor();
    }
}

void GridPresses::Release(MouseButton button, const GridPointer& pointer) {
    if (m_pressed != button) {
        return;
    }
    Forget();
    m_grid.SetMouseCell(pointer.cell.row, pointer.cell.screenCol);
    if (m_grid.MouseUp) {
        m_grid.MouseUp(button, pointer.shift, pointer.x, pointer.y);
    }
}

void GridPresses::Move(const GridPointer& pointer) {
    m_grid.SetMouseCell(pointer.cell.row, pointer.cell.screenCol);
    if (m_grid.MouseMove) {
        // The button of a move is the one that is down; the left one stands for none.
        m_grid.MouseMove(m_pressed.value_or(MouseButton::Left), pointer.shift, pointer.x, pointer.y);
    }
}

void GridPresses::Forget() noexcept {
    m_pressed.reset();
    m_dragging = false;
}

void GridPresses::DragTo(GridCell cell) {
    if (cell != GridCell{m_grid.EndRow(), m_grid.EndCol()}) {
        m_grid.ExtendSelection(cell.row, cell.screenCol);
    }
}

}  // namespace kd
