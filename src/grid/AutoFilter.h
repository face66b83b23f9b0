#pragma once

#include <vector>

#include "grid/Desk.h"
#include "platform/Toolkit.h"

/// Narrowing the rows by the values of a column. A column's filter is the list of values in its catalogue
/// record, and nothing else; it works on the texts that the grid shows.
namespace kd {

/// The whole flow of a header press: offers the column's values in frmAutoFilter and filters the rows by what
/// stays ticked. `grid` is the left top corner of the grid on the screen, as if the main window had no frame
/// and no menu bar: the window's corner plus the grid's place in it.
void ShowColumnFilter(Desk& desk, std::int32_t screenCol, const Place& grid);

/// Tool tip of a header cell; empty for a negative column.
Text GetFilterCaption(const Desk& desk, std::int32_t screenCol);

/// The distinct values of a column, as the rows first spell them, of all rows that the numeric rule and the
/// other columns' filters leave.
std::vector<Text> GetColumnValues(const Desk& desk, std::int32_t screenCol);

/// Number of columns that have a filter.
std::int32_t CountActiveFilters(const Desk& desk);

/// Hides the rows that the numeric rule or a filter keeps out, and shows all others.
void ApplyFilters(Desk& desk);

/// Drops the filters of all columns and turns their funnels grey; leaves the rows as they are.
void DropFilters(Desk& desk);

/// Drops all filters and shows all rows.
void ClearAllFilters(Desk& desk);

/// Whether Show Only Numeric Variables keeps a row out.
bool FailsNumericRule(const Desk& desk, std::int32_t row);

}  // namespace kd
