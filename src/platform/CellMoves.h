#pragma once

#include "platform/GridKeyCodes.h"
#include "platform/VSFlexGrid.h"

namespace kd {

/// Where keys lead, over what is shown of a grid. Hidden rows and columns are skipped, also where the way
/// begins at one. Nothing here changes the grid.

/// How far one key leads.
enum class Stride : std::uint8_t { One, Page, End };

/// Whether it is a cell below the header.
inline bool IsDataCell(GridCell cell) noexcept {
    return cell.row >= 1 && cell.screenCol >= 0;
}

/// The shown row that is one row, `page` rows or all the way up (direction -1) or down (1) from `row`; the
/// first or the last one where there are not so many, the first one from row 0. 0 when no row is shown. `row`
/// is one of the grid's, or below 1.
std::int32_t RowFrom(const VSFlexGrid& grid, std::int32_t row, int direction, Stride stride, int page);
/// The row itself when it is shown, else the next shown one, else the one before; 0 when none is.
std::int32_t NearestRow(const VSFlexGrid& grid, std::int32_t row);
/// The shown column beside `screenCol` in the direction (-1 or 1), or at that end; the last one in sight
/// where it ends. -1 when no column is shown. A page is no stride of columns.
std::int32_t ColFrom(const VSFlexGrid& grid, std::int32_t screenCol, int direction, Stride stride);

/// Where the key leads from the current cell, or with Shift from the selection's opposite corner: arrows,
/// with Ctrl to the end of the way, pages of `page` rows, Home and End in the row, with Ctrl in the grid.
/// From the header every arrow leads to the first row. No data cell where nothing is in sight, and for every
/// other key.
GridCell CellFromKey(const VSFlexGrid& grid, int keyCode, int shift, int page);
/// The shown cell behind the current one, row by row, or before it; no data cell where there is none.
GridCell NextCell(const VSFlexGrid& grid, bool forward);

}  // namespace kd
