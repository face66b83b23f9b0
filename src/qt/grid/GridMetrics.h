#pragma once

namespace kd {

/// Blank pixels between a cell's edge and its text, left and right.
inline constexpr int CellMargin = 4;
/// What a row is higher than its text, the grid line included.
inline constexpr int RowMargin = 5;
/// What the header is higher than a row, so that its picture stands below the text's middle.
inline constexpr int HeaderExtra = 10;
/// Characters of average width in a column that nothing has sized yet.
inline constexpr int DefaultColChars = 10;
/// No column becomes narrower by hand: what is left can still be taken by its divider.
inline constexpr int LeastColWidth = 16;
/// Between the header's text and its picture.
inline constexpr int PictureGap = 3;

}  // namespace kd
