#pragma once

#include "grid/Desk.h"

/// How an open cell editor comes to its end for whatever begins elsewhere.
namespace kd {

/// Whether the text of an open editor may stand in its cell; an untouched one always may.
bool MayStand(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text);

/// Closes an open cell editor by selecting the current cell anew; a refused text is told and keeps it open.
/// A text that was told in this way is not told again while it stands there, as on the way along the menus.
void CloseCellEditor(Desk& desk);

/// The same, and a refused text is given up once it has been told: the cell keeps its old one.
void LeaveCellEditor(Desk& desk);

/// For a command of a menu, whose opening has closed the editor or told the refusal: a refused text is given
/// up without another word.
void LeaveToldCellEditor(Desk& desk);

}  // namespace kd
