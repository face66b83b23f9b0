#pragma once

#include "grid/Desk.h"

namespace kd {

namespace modKDLimitDesk {
/// Replaces gLabels by a new list of all columns; the position of one is its number.
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

}  // namespace kd
