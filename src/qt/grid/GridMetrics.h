#pragma once

#include <algorithm>

namespace kd {

/// Blank pixels between a cell's edge and its text, left and right.
inline constexpr int CellMargin = 4;
/// Of the frame of the current cell, and of its editor.
inline constexpr int FrameWidth = 2;
/// What a row is higher than its text, the grid line included.
inline constexpr int RowMargin = 5;
/// What the header is higher than a row, so that its picture stands below the text's middle.
inline constexpr int HeaderExtra = 10;
/// Characters of average width in a column that nothing has sized yet.
inline constexpr int DefaultColChars = 10;
/// Pixels to each side of a column's right edge that take the divider, on a screen of the usual dots.
inline constexpr int DividerGrip = 3;
/// No column becomes narrower by hand: between its own divider and its neighbour's something is left of its
/// header to press. On a screen of the usual dots.
inline constexpr int LeastColWidth = 16;
/// Of an inch.
inline constexpr int UsualDots = 96;
/// As many pixels as are as large on a screen of `dots` an inch; never fewer.
constexpr int OnScreenOf(int dots, int pixels) {
    return std::max(pixels, pixels * dots / UsualDots);
}
/// Between the header's text and its picture.
inline constexpr int PictureGap = 3;

}  // namespace kd
