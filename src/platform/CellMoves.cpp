#include "platform/CellMoves.h"

#include <algorithm>

namespace kd {

namespace {

GridCell RowMove(const VSFlexGrid& grid, GridCell from, int direction, Stride stride, int page) {
    // The later of the two: the column before counts where none is from here on.
    return {RowFrom(grid, from.row, direction, stride, page),
            std::max(grid.VisibleColFrom(from.screenCol, 1), grid.VisibleColFrom(from.screenCol, -1))};
}

GridCell ColMove(const VSFlexGrid& grid, GridCell from, int direction, Stride stride, int page) {
    if (from.row < 1) {
        return RowMove(grid, from, direction, stride, page);
    }
    return {NearestRow(grid, from.row), ColFrom(grid, from.screenCol, direction, stride)};
}

GridCell HomeOrEnd(const VSFlexGrid& grid, GridCell from, int direction, bool wholeGrid, int page) {
    const std::int32_t row = NearestRow(grid, from.row);
    return {wholeGrid ? RowFrom(grid, row, direction, Stride::End, page) : row,
            ColFrom(grid, from.screenCol, direction, Stride::End)};
}

}  // namespace

std::int32_t RowFrom(const VSFlexGrid& grid, std::int32_t row, int direction, Stride stride, int page) {
    const auto& visible = grid.VisibleRows();
    if (visible.empty()) {
        return 0;
    }
    if (row < 1) {
        return visible.front();  // no current cell yet, or a header's
    }
    const int last = static_cast<int>(visible.size()) - 1;
    const int index = static_cast<int>(grid.VisibleIndexOf(row));
    int target = index;
    switch (stride) {
        case Stride::One:
            // From a hidden row the index leads to the next visible one already.
            target = direction == 1 && grid.RowHidden(row) ? index : index + direction;
            break;
        case Stride::Page:
            target = index + direction * page;
            break;
        case Stride::End:
            target = direction == -1 ? 0 : last;
            break;
    }
    return visible[static_cast<std::size_t>(std::clamp(target, 0, last))];
}

std::int32_t NearestRow(const VSFlexGrid& grid, std::int32_t row) {
    // The later of the two: the row before counts where none is from here on.
    return std::max(grid.VisibleRowFrom(row, 1), grid.VisibleRowFrom(row, -1));
}

std::int32_t ColFrom(const VSFlexGrid& grid, std::int32_t screenCol, int direction, Stride stride) {
    if (stride == Stride::End) {
        return direction == -1 ? grid.VisibleColFrom(0, 1) : grid.VisibleColFrom(grid.Cols(), -1);
    }
    const std::int32_t next = grid.VisibleColFrom(screenCol + direction, direction);
    return next >= 0 ? next : grid.VisibleColFrom(screenCol, -direction);
}

GridCell CellFromKey(const VSFlexGrid& grid, int keyCode, int shift, int page) {
    const bool corner = (shift & sbShift) != 0;
    const GridCell from = corner ? GridCell{grid.EndRow(), grid.EndCol()} : GridCell{grid.Row(), grid.Col()};
    const bool far = (shift & sbCtrl) != 0;
    const Stride stride = far ? Stride::End : Stride::One;
    switch (keyCode) {
        case kcUp:
            return RowMove(grid, from, -1, stride, page);
        case kcDown:
            return RowMove(grid, from, 1, stride, page);
        case kcPageUp:
            return RowMove(grid, from, -1, Stride::Page, page);
        case kcPageDown:
            return RowMove(grid, from, 1, Stride::Page, page);
        case kcLeft:
            return ColMove(grid, from, -1, stride, page);
        case kcRight:
            return ColMove(grid, from, 1, stride, page);
        case kcHome:
            return HomeOrEnd(grid, from, -1, far, page);
        case kcEnd:
            return HomeOrEnd(grid, from, 1, far, page);
        default:
            return {};
    }
}

GridCell NextCell(const VSFlexGrid& grid, bool forward) {
    const int direction = forward ? 1 : -1;
    const std::int32_t row = grid.Row();
    const std::int32_t col = grid.Col();
    if (row < 1) {
        return {forward ? NearestRow(grid, row) : 0, ColFrom(grid, col, -1, Stride::End)};
    }
    const std::int32_t next = grid.VisibleColFrom(col + direction, direction);
    if (next < 0) {
        return {grid.VisibleRowFrom(row + direction, direction), ColFrom(grid, col, -direction, Stride::End)};
    }
    return {grid.VisibleRowFrom(row, direction), next};
}

}  // namespace kd
