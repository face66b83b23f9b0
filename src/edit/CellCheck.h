#pragma once

#include "edit/SelectedCells.h"

namespace kd {

/// A cell that may not be written.
struct RefusedCell {
    std::int32_t i;  // row among the selected cells
    std::int32_t j;  // column among them
    bool readOnly;   // else its value is refused
};

/// The first of the cells, rows outer, columns inner, that may not take its value: cell by cell the
/// column is asked first and the value then. Nothing when all may.
std::optional<RefusedCell> FirstRefusedCell(Desk& desk, const SelectedCells& cells);

/// The words of a box about a refused cell: `lead`, an empty line, "Found: ", the column's name, " = " and
/// `value`.
Text RefusalText(const Desk& desk, std::string_view lead, std::int32_t screenCol, std::string_view value);

}  // namespace kd
