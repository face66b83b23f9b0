#include "grid/CellEditing.h"

#include "grid/CellGate.h"

namespace kd {

bool MayStand(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text) {
    return text == desk.Grid.TextMatrix(row, screenCol) || IsCellValueValid(desk, row, screenCol, text);
}

void CloseCellEditor(Desk& desk) {
    VSFlexGrid& grid = desk.Grid;
    if (!grid.EditWindow() || desk.toldText == grid.EditText()) {
        return;
    }
    grid.Select(grid.Row(), grid.Col());
    if (grid.EditWindow()) {
        desk.toldText = grid.EditText();
    }
}

void LeaveCellEditor(Desk& desk) {
    CloseCellEditor(desk);
    if (desk.Grid.EditWindow()) {
        desk.Grid.CancelEdit();
    }
}

void LeaveToldCellEditor(Desk& desk) {
    VSFlexGrid& grid = desk.Grid;
    if (grid.EditWindow() && !MayStand(desk, grid.Row(), grid.Col(), grid.EditText())) {
        grid.CancelEdit();
    }
    LeaveCellEditor(desk);
}

}  // namespace kd
