#pragma once

#include "grid/Desk.h"

/// The one gate and the one write of what the user changes in a cell; a load fills the rows by RowFill.h.
namespace kd {

/// Whether a text may stand in a cell; `row` and `screenCol` are grid positions.
bool IsCellValueValid(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text);

/// Stores a text through cField.SetValue and shows it normalised. Where the text as it was given differs from
/// the baseline's, marks the cell and flags the view; else takes the cell's mark away.
/// @throws cError as cField.SetValue does.
void SetCellValue(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text);

/// Whether a text is a number with either decimal separator (not both); the empty text is none.
bool IsNumericText(std::string_view text, const Locale& locale);
/// The number of a text; 0 when nothing is left of it after normalising.
double ParseCellNumber(std::string_view text, const Locale& locale);

}  // namespace kd
