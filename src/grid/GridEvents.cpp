#include "grid/GridEvents.h"

#include "grid/CellEditing.h"
#include "grid/CellGate.h"
#include "grid/ColumnCatalogue.h"
#include "platform/GridKeyCodes.h"

namespace kd {

GridEvents::GridEvents(Desk& desk, EventBoundary& boundary) : m_desk(desk), m_boundary(boundary) {
    VSFlexGrid& grid = desk.Grid;
    grid.BeforeMouseDown = [this](MouseButton button, int, int, int, bool& cancel) {
        m_boundary.Run([&] { Grid_BeforeMouseDown(button, cancel); });
    };
    grid.MouseDown = [this](MouseButton button, int, int, int) {
        m_boundary.Run([&] { Grid_MouseDown(button); });
    };
    grid.MouseUp = [this](MouseButton button, int, int, int) {
        m_boundary.Run([&] { Grid_MouseUp(button); });
    };
    grid.MouseMove = [this](MouseButton, int, int, int) { m_boundary.Run([&] { Grid_MouseMove(); }); };
    grid.BeforeEdit = [this](std::int32_t row, std::int32_t col, bool& cancel) {
        m_boundary.Run([&] { Grid_BeforeEdit(row, col, cancel); });
    };
    grid.ValidateEdit = [this](std::int32_t row, std::int32_t col, bool& cancel) {
        m_boundary.Run([&] { Grid_ValidateEdit(row, col, cancel); });
    };
    grid.AfterEdit = [this](std::int32_t row, std::int32_t col) {
        m_boundary.Run([&] { Grid_AfterEdit(row, col); });
    };
    grid.RowColChange = [this] { m_boundary.Run([&] { Grid_RowColChange(); }); };
    grid.KeyDown = [this](int keyCode, int shift) { m_boundary.Run([&] { Grid_KeyDown(keyCode, shift); }); };
    // A character that the files' code page lacks is seen as "?" at once, not lost at the save; and a line
    // end that came with a pasted text would end the variable's line in the file.
    grid.TypedText = [this](std::string_view text) {
        return OneLine(m_desk.g.platform.locale.CodePage().Narrowed(text));
    };
}

GridEvents::~GridEvents() {
    VSFlexGrid& grid = m_desk.Grid;
    grid.BeforeMouseDown = nullptr;
    grid.MouseDown = nullptr;
    grid.MouseUp = nullptr;
    grid.MouseMove = nullptr;
    grid.BeforeEdit = nullptr;
    grid.ValidateEdit = nullptr;
    grid.AfterEdit = nullptr;
    grid.RowColChange = nullptr;
    grid.KeyDown = nullptr;
    grid.TypedText = nullptr;
}

bool GridEvents::OverEditableCell() const {
    const VSFlexGrid& grid = m_desk.Grid;
    return grid.MouseRow() >= 1 && grid.MouseCol() >= 0 && LabelOf(m_desk, grid.MouseCol()).Editable();
}

void GridEvents::Grid_BeforeMouseDown(MouseButton button, bool& cancel) {
    VSFlexGrid& grid = m_desk.Grid;
    const std::int32_t row = grid.MouseRow();
    const std::int32_t col = grid.MouseCol();
    if (row > 0 && col >= 0 && button == MouseButton::Right && grid.EditWindow()) {
        cancel = true;
        CloseCellEditor(m_desk);
        m_desk.g.platform.toolkit.ShowPopupMenu(m_desk.mnuEditMenu);
        return;
    }
    if (row == 0) {
        cancel = true;
        if (col < 0) {
            return;  // the empty place beside the last column
        }
        grid.SetCol(col);
        if (!grid.EditWindow() && ShowColumnFilter) {  // a refused text keeps its editor, and the press ends
            ShowColumnFilter(col);
        }
    }
}

void GridEvents::Grid_MouseDown(MouseButton button) {
    VSFlexGrid& grid = m_desk.Grid;
    if (button != MouseButton::Right || !OverEditableCell()) {
        return;
    }
    // A cell inside the selection leaves it alone, so that a command of the pop-up acts on all of it.
    if (!grid.GetSelection().Contains(grid.MouseRow(), grid.MouseCol())) {
        grid.SetRow(grid.MouseRow());
        grid.SetCol(grid.MouseCol());
    }
}

void GridEvents::Grid_MouseUp(MouseButton button) {
    if (button != MouseButton::Right || !OverEditableCell()) {
        return;
    }
    m_desk.mnuPaste.SetEnabled(!m_desk.g.platform.suite.NewClipboard()->GetText().empty());
    m_desk.g.platform.toolkit.ShowPopupMenu(m_desk.mnuEditMenu);
}

void GridEvents::Grid_MouseMove() {
    VSFlexGrid& grid = m_desk.Grid;
    const GridCell cell{grid.MouseRow(), grid.MouseCol()};
    if (cell == m_lastMouseCell) {
        return;
    }
    m_lastMouseCell = cell;
    grid.SetToolTipText(cell.row == 0 && GetFilterCaption ? GetFilterCaption(cell.screenCol) : Text());
}

void GridEvents::Grid_BeforeEdit(std::int32_t row, std::int32_t screenCol, bool& cancel) {
    m_desk.toldText.reset();  // that was another editor's
    if (row < 1 || screenCol < 0 || !LabelOf(m_desk, screenCol).Editable()) {
        cancel = true;
    }
}

void GridEvents::Grid_ValidateEdit(std::int32_t row, std::int32_t screenCol, bool& cancel) {
    const VSFlexGrid& grid = m_desk.Grid;
    const Text text = grid.EditText();
    cancel = !MayStand(m_desk, row, screenCol, text);
    if (cancel) {
        m_desk.g.platform.toolkit.Say("Invalid value '" + text + "' entered for cell!");
    }
}

void GridEvents::Grid_AfterEdit(std::int32_t row, std::int32_t screenCol) {
    VSFlexGrid& grid = m_desk.Grid;
    try {
        SetCellValue(m_desk, row, screenCol, Text(grid.TextMatrix(row, screenCol)));
    } catch (const cError&) {
        // What could not be stored must not look as if it were.
        Globals& g = m_desk.g;
        const cField& field = g.gFields->Ref(grid.RowData(row));
        grid.SetTextMatrix(row, screenCol,
                           field.ValueText(grid.ColData(screenCol), vmGrid, g.platform.locale));
        throw;
    }
}

void GridEvents::Grid_RowColChange() {
    const VSFlexGrid& grid = m_desk.Grid;
    if (grid.Row() < 1 || grid.Col() < 1) {
        m_desk.Panel1.SetCaption({});
        return;
    }
    const Globals& g = m_desk.g;
    const cField& field = g.gFields->Ref(grid.RowData(grid.Row()));
    const cFile& view = g.gFiles->Ref(field.FileID());
    Text text = view.Filename();
    // Deliberate: the brackets stand behind a view without a name, and a named one shows the bare path.
    // GridEventsTest.PanelOneShowsEmptyBracketsForAViewWithoutAName
    if (view.ViewName().empty()) {
        text += " [" + view.ViewName() + "]";
    }
    m_desk.Panel1.SetCaption(std::move(text));
}

void GridEvents::Grid_KeyDown(int keyCode, int shift) {
    if (shift != sbCtrl) {
        return;
    }
    // The commands themselves, whatever the pop-up last enabled: the clipboard may have been filled since.
    const auto& command = keyCode == kcC ? m_desk.mnuCopy.Click : m_desk.mnuPaste.Click;
    if ((keyCode == kcC || keyCode == kcV) && command) {
        command();
    }
}

}  // namespace kd
