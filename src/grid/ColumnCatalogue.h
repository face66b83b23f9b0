#pragma once

#include "grid/Desk.h"

namespace kd {

/// Number of columns in the catalogue; a column's number is its position in gLabels, from 1.
inline constexpr std::int32_t ColumnCount = 35;
/// The first column in sight when the paths are hidden ("VarNo"), and the first one shown only on request
/// ("XRef").
inline constexpr std::int32_t FirstVariableColumn = 7;
inline constexpr std::int32_t FirstPropertyColumn = 21;

namespace modKDLimitDesk {
/// Replaces gLabels by a new list of the 35 columns.
void BuildColumnCatalogue(Globals& g);
}  // namespace modKDLimitDesk

/// Lays the empty grid out from gLabels: the header row and nothing else.
void SetupGridColumns(Desk& desk);

/// Applies the alignment letters to all columns and sizes them by their content.
void SetGridALignments(Desk& desk);

/// Screen position, from 0, of a column number. Shows a critical box and gives 0 when no column has the
/// number.
std::int32_t LabelIndexToGridColumn(Desk& desk, std::int32_t columnNumber);

/// The catalogue record of a screen position.
const cLabel& LabelOf(const Desk& desk, std::int32_t screenCol);

/// Appends the row of the variable at position `row` in gFields, which is also its grid row. Only while
/// loading, in ascending order: the rows behind it would be cut off.
void RefreshGridRow(Desk& desk, std::int32_t row);

}  // namespace kd
