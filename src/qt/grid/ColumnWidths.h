#pragma once

#include <vector>

#include "platform/VSFlexGrid.h"
#include "qt/grid/TextWidths.h"

namespace kd {

/// Pixels that the columns `first` to `last` need for their texts: the header with its picture, all rows,
/// hidden ones too, margins included. Both are columns of the grid, `first` not beyond `last`.
std::vector<int> ColumnWidths(const VSFlexGrid& grid, const TextWidths& widths, std::int32_t first,
                              std::int32_t last);

}  // namespace kd
