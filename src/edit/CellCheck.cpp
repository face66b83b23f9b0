#include "edit/CellCheck.h"

#include "grid/CellGate.h"
#include "grid/ColumnCatalogue.h"

namespace kd {

std::optional<RefusedCell> FirstRefusedCell(Desk& desk, const SelectedCells& cells) {
    std::vector<bool> readOnly;  // by the cells' column, from 0
    for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
        readOnly.push_back(!LabelOf(desk, cells.SelCols(j)).Editable());
    }
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            if (readOnly[static_cast<std::size_t>(j - 1)]) {
                return RefusedCell{i, j, true};
            }
            if (!IsCellValueValid(desk, cells.SelRows(i), cells.SelCols(j), cells.SelValues(i, j))) {
                return RefusedCell{i, j, false};
            }
        }
    }
    return std::nullopt;
}

Text RefusalText(const Desk& desk, std::string_view lead, std::int32_t screenCol, std::string_view value) {
    return Text(lead) + "\r\n\r\nFound: " + LabelOf(desk, screenCol).Name() + " = " + Text(value);
}

}  // namespace kd
