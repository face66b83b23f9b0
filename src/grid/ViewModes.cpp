#include "grid/ViewModes.h"

#include "grid/AutoFilter.h"
#include "grid/CellEditing.h"
#include "grid/ColumnCatalogue.h"
#include "model/Columns.h"
#include "platform/Hourglass.h"
#include "platform/RedrawOff.h"

namespace kd {
namespace {

// "VarNo" and "Variable Name" stay in sight beside the limits.
constexpr std::int32_t FrozenVariableColumns = 2;

void HidePaths(Desk& desk) {
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        if (desk.Grid.ColData(col) < FirstVariableColumn) {
            desk.Grid.SetColHidden(col, true);
        }
    }
    desk.Grid.SetFrozenCols(LabelIndexToGridColumn(desk, FirstVariableColumn) + FrozenVariableColumns);
}

void ShowPaths(Desk& desk) {
    for (std::int32_t col = 0; col < desk.Grid.Cols(); ++col) {
        const std::int32_t number = desk.Grid.ColData(col);
        if (number < FirstVariableColumn) {
            desk.Grid.SetColHidden(col, !LabelOf(desk, col).Visible());
        } else if (number >= FirstFurtherColumn) {
            // Deliberate: the properties are hidden although Show All Properties keeps its tick.
            // ViewModesTest.ShowingThePathsHidesThePropertiesAndKeepsTheirTick
            desk.Grid.SetColHidden(col, desk.mnuShowAll.Checked() || !LabelOf(desk, col).Visible());
        }
    }
    desk.Grid.SetFrozenCols(0);
}

}  // namespace

void mnuOptions_Click(Desk& desk) {
    CloseCellEditor(desk);
    desk.mnuClearFilters.SetEnabled(CountActiveFilters(desk) > 0);
}

void mnuClearFilters_Click(Desk& desk) {
    ClearAllFilters(desk);
}

void mnuView_Click(Desk& desk) {
    CloseCellEditor(desk);
}

void mnuShowPaths_Click(Desk& desk) {
    const RedrawOff quiet(desk.Grid);
    const bool show = !desk.mnuShowPaths.Checked();
    desk.mnuShowPaths.SetChecked(show);
    if (show) {
        ShowPaths(desk);
    } else {
        HidePaths(desk);
    }
}

void mnuShowOnlyNumericVariables_Click(Desk& desk) {
    const Hourglass hourglass(desk.g.platform.toolkit);
    desk.g.platform.toolkit.ProcessEvents();
    const RedrawOff quiet(desk.Grid);
    DropFilters(desk);
    desk.mnuShowOnlyNumericVariables.SetChecked(!desk.mnuShowOnlyNumericVariables.Checked());
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        desk.Grid.SetRowHidden(row, FailsNumericRule(desk, row));
    }
}

void mnuShowAll_Click(Desk& desk) {
    const bool show = !desk.mnuShowAll.Checked();
    desk.mnuShowAll.SetChecked(show);
    const Hourglass hourglass(desk.g.platform.toolkit);
    const RedrawOff quiet(desk.Grid);
    for (std::int32_t col = 1; col < desk.Grid.Cols(); ++col) {
        if (desk.Grid.ColData(col) >= FirstFurtherColumn) {
            desk.Grid.SetColHidden(col, !show && !LabelOf(desk, col).Visible());
        }
    }
}

}  // namespace kd
