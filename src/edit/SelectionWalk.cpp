#include "edit/SelectionWalk.h"

#include <functional>

#include "grid/CellGate.h"
#include "grid/RedrawOff.h"

namespace kd {
namespace {

/// `count` positions: `first` as it is, then the next ones that are not hidden. Empty when `end` comes first.
std::vector<std::int32_t> Positions(std::int32_t first, std::int32_t count, std::int32_t end,
                                    const std::function<bool(std::int32_t)>& hidden) {
    std::vector<std::int32_t> positions;
    // Deliberate: the first one is not tested for being hidden.
    // SelectionWalkTest.HiddenFirstRowIsUsedAndTheLastVisibleRowLeftOut
    for (std::int32_t at = first; at < end; ++at) {
        if (static_cast<std::int32_t>(positions.size()) == count) {
            return positions;
        }
        if (at == first || !hidden(at)) {
            positions.push_back(at);
        }
    }
    if (static_cast<std::int32_t>(positions.size()) < count) {
        positions.clear();
    }
    return positions;
}

}  // namespace

std::optional<SelectionWalk> WalkFrom(const VSFlexGrid& grid, std::int32_t row, std::int32_t screenCol,
                                      std::int32_t rows, std::int32_t cols) {
    SelectionWalk walk;
    walk.m_rows = Positions(row, rows, grid.Rows(), [&grid](std::int32_t at) { return grid.RowHidden(at); });
    walk.m_cols =
        Positions(screenCol, cols, grid.Cols(), [&grid](std::int32_t at) { return grid.ColHidden(at); });
    if (walk.m_rows.empty() || walk.m_cols.empty()) {
        return std::nullopt;
    }
    walk.m_values.resize(walk.m_rows.size() * walk.m_cols.size());
    return walk;
}

std::optional<SelectionWalk> BuildSelectionWalk(const Desk& desk) {
    const VSFlexGrid& grid = desk.Grid;
    const GridSelection selection = grid.GetSelection();
    if (selection.firstRow < 1 || selection.firstCol < 0) {
        return std::nullopt;
    }
    std::int32_t rows = 0;
    for (std::int32_t row = selection.firstRow; row <= selection.lastRow; ++row) {
        rows += grid.RowHidden(row) ? 0 : 1;
    }
    std::int32_t cols = 0;
    for (std::int32_t col = selection.firstCol; col <= selection.lastCol; ++col) {
        cols += grid.ColHidden(col) ? 0 : 1;
    }
    if (rows == 0 || cols == 0) {
        return std::nullopt;
    }
    return WalkFrom(grid, selection.firstRow, selection.firstCol, rows, cols);
}

void ReadShownTexts(const Desk& desk, SelectionWalk& walk) {
    for (std::int32_t i = 1; i <= walk.nRows(); ++i) {
        for (std::int32_t j = 1; j <= walk.nCols(); ++j) {
            walk.SetSelValues(i, j, Text(desk.Grid.TextMatrix(walk.SelRows(i), walk.SelCols(j))));
        }
    }
}

void WriteValues(Desk& desk, const SelectionWalk& walk) {
    const RedrawOff quiet(desk.Grid);
    for (std::int32_t i = 1; i <= walk.nRows(); ++i) {
        for (std::int32_t j = 1; j <= walk.nCols(); ++j) {
            SetCellValue(desk, walk.SelRows(i), walk.SelCols(j), walk.SelValues(i, j));
        }
    }
}

}  // namespace kd
